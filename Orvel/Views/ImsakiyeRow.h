#pragma once

#include "Colors.h"
#include "Imsakiye.h"
#include "ImsakiyeMode.h"
#include "ViewStyle.h"

#include <QWidget>

namespace orvel {

// One day of the timetable: the date with its note under it, the Hijri date and the six times.
// Today's row is tinted; sahur and iftar stand out in Ramadan; days gone by fade.
class ImsakiyeRow : public QWidget {
    Q_OBJECT

public:
    static constexpr int rowHeight = 30;
    static constexpr qreal pastOpacity = ViewStyle::pastOpacity;
    static constexpr qreal todayFill = 0.13;

    struct Content {
        Imsakiye::Row row;
        ImsakiyeMode mode = ImsakiyeMode::month;
        Appearance appearance = Appearance::light;

        bool operator==(const Content &) const = default;
    };

    explicit ImsakiyeRow(QWidget *parent = nullptr);

    void setContent(const Content &content);
    const Content &content() const { return content_; }

    QSize sizeHint() const override;

    // "10 Mar Sal, 21. gün, Kadir Gecesi, İmsak 05:53, …, Yatsı 20:31, bugün".
    static QString accessibleText(const Content &content);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Content content_;
};

} // namespace orvel
