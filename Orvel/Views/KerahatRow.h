#pragma once

#include "Colors.h"
#include "Kerahat.h"
#include "PanelRules.h"

#include <QFont>
#include <QString>
#include <QWidget>

#include <optional>

namespace orvel {

// One kerahat interval between the prayer rows: a small orange bar, its title, the time until
// it starts when it is the next one, and its range.
class KerahatRow : public QWidget {
    Q_OBJECT

public:
    using RowState = KerahatRowState;

    static constexpr int rowHeight = 24;

    struct Content {
        KerahatInterval interval;
        RowState state = RowState::upcoming;
        std::optional<QString> countdown; // "12 dk", shown with " sonra"
        QString range;                    // "13:01 – 13:11"
        QString accessibleName;
        Appearance appearance = Appearance::light;

        bool operator==(const Content &) const = default;
    };

    explicit KerahatRow(QWidget *parent = nullptr);

    void setContent(const Content &content);
    const Content &content() const { return content_; }
    // The countdown as drawn after the title: " · 12 dk sonra", or empty.
    QString countdownText() const;

    QSize sizeHint() const override;

    // How the row is laid out at a width: the fonts, the title as drawn, where the range ends,
    // and whether the countdown had to go under the title.
    struct Arrangement {
        QFont titleFont;
        QFont countdownFont;
        QFont rangeFont;
        QString title;
        QString countdown;
        qreal rangeRight = 0;
        bool countdownBelow = false;
    };
    Arrangement arrange(qreal width) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    int heightFor(const Arrangement &arrangement) const;
    void fitHeight();

    Content content_;
};

} // namespace orvel
