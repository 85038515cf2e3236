#pragma once

#include "Colors.h"
#include "Kerahat.h"
#include "PopoverRules.h"

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

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Content content_;
};

} // namespace orvel
