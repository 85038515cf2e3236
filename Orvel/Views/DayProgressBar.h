#pragma once

#include "Colors.h"
#include "DayTimes.h"
#include "Kerahat.h"

#include <QWidget>

#include <vector>

namespace orvel {

// The day from İmsak to Yatsı as a thin track: the part gone by, the kerahat zones, a mark per
// prayer time and a knob at the present moment.
class DayProgressBar : public QWidget {
    Q_OBJECT

public:
    static constexpr int barHeight = 14;
    static constexpr qreal horizontalPadding = 3;
    // Room around the bar for the knob and its shadow at the ends: the widget is this much
    // larger than the bar on each side, and its parent lays it out that much wider and taller.
    static constexpr int overhang = 6;
    static constexpr int bleed = 2;

    struct Content {
        DayTimes today;
        double progress = 0; // 0…1
        std::vector<KerahatInterval> kerahat;
        bool inKerahat = false;
        Appearance appearance = Appearance::light;

        bool operator==(const Content &) const = default;
    };

    explicit DayProgressBar(QWidget *parent = nullptr);

    void setContent(const Content &content);
    const Content &content() const { return content_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Content content_;
};

} // namespace orvel
