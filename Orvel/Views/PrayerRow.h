#pragma once

#include "Colors.h"
#include "PanelRules.h"
#include "Prayer.h"

#include <QString>
#include <QWidget>

#include <optional>

namespace orvel {

class SymbolButton;

// One of the day's six times: symbol, name with its state, clock time and the bell that
// switches the prayer's notification.
class PrayerRow : public QWidget {
    Q_OBJECT

public:
    using RowState = PrayerRowState;

    static constexpr int rowHeight = 38;
    static constexpr int leadingPadding = 6;
    static constexpr int trailingPadding = 8;
    static constexpr int symbolColumn = 28;
    static constexpr int bellSize = 22;
    static constexpr int bellGap = 6;

    struct Content {
        Prayer prayer = Prayer::imsak;
        QString time;
        RowState state = RowState::upcoming;
        bool notify = false;
        std::optional<QString> tag;
        Appearance appearance = Appearance::light;

        bool operator==(const Content &) const = default;
    };

    explicit PrayerRow(QWidget *parent = nullptr);

    void setContent(const Content &content);
    const Content &content() const { return content_; }

    QSize sizeHint() const override;

signals:
    // The bell was clicked: the prayer's notification is to be switched.
    void toggleRequested(Prayer prayer);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void placeBell();

    Content content_;
    SymbolButton *bell_;
};

} // namespace orvel
