#include "DayProgressBar.h"

#include "PanelRules.h"
#include "ViewStyle.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>

namespace orvel {

namespace {

constexpr qreal trackHeight = 4;
constexpr qreal narrowest = 4;
constexpr qreal zoneHeight = 8;
constexpr qreal markSize = 6;
constexpr qreal knobSize = 11;
constexpr qreal knobRing = 3;

void capsule(QPainter &painter, const QRectF &rect, const QBrush &brush)
{
    const qreal radius = std::min(rect.width(), rect.height()) / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, radius, radius);
}

QRectF centred(qreal x, qreal y, qreal width, qreal height)
{
    return {x - width / 2, y - height / 2, width, height};
}

// A soft shadow without a blur filter: a few widening rings of falling strength.
void softShadow(QPainter &painter, const QPointF &centre, qreal radius)
{
    constexpr int steps = 4;
    constexpr qreal totalAlpha = 0.25;
    painter.setPen(Qt::NoPen);
    for (int step = steps; step >= 1; --step) {
        const qreal spread = radius + step * 0.5;
        painter.setBrush(QColor(0, 0, 0, static_cast<int>(255 * totalAlpha / steps)));
        painter.drawEllipse(centre + QPointF(0, 0.5), spread, spread);
    }
}

} // namespace

DayProgressBar::DayProgressBar(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(barHeight + 2 * bleed);
}

void DayProgressBar::setContent(const Content &content)
{
    if (content == content_)
        return;
    content_ = content;
    update();
}

QSize DayProgressBar::sizeHint() const
{
    return {200, barHeight + 2 * bleed};
}

void DayProgressBar::paintEvent(QPaintEvent *)
{
    const Appearance appearance = content_.appearance;
    const QColor accent = ViewStyle::accent(appearance);
    const QColor kerahat = ViewStyle::kerahat(appearance);
    const qreal left = overhang + horizontalPadding;
    const qreal barWidth = std::max(0.0, width() - 2 * left);
    const qreal centreY = bleed + barHeight / 2.0;
    const auto x = [&](double fraction) { return left + barWidth * fraction; };
    const auto at = [&](Instant instant) { return PanelRules::fraction(instant, content_.today); };

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    capsule(painter, QRectF(left, centreY - trackHeight / 2, barWidth, trackHeight),
            ViewStyle::faded(ViewStyle::primary(appearance), 0.08));

    const qreal filled = std::max(barWidth * content_.progress, narrowest);
    QLinearGradient gradient(left, 0, left + filled, 0);
    gradient.setColorAt(0, ViewStyle::faded(accent, 0.4));
    gradient.setColorAt(1, accent);
    capsule(painter, QRectF(left, centreY - trackHeight / 2, filled, trackHeight), gradient);

    for (const KerahatInterval &interval : content_.kerahat) {
        const double a = at(interval.start);
        const double b = at(interval.end);
        const qreal zoneWidth = std::max(barWidth * (b - a), narrowest);
        capsule(painter, centred(x((a + b) / 2), centreY, zoneWidth, zoneHeight), ViewStyle::faded(kerahat, 0.55));
    }

    const QColor pending = ViewStyle::faded(ViewStyle::secondary(appearance), 0.55);
    for (const Prayer::Value prayer : Prayer::all) {
        const double fraction = at(content_.today[prayer]);
        capsule(painter, centred(x(fraction), centreY, markSize, markSize),
                fraction <= content_.progress ? accent : pending);
    }

    const QPointF knob(x(content_.progress), centreY);
    softShadow(painter, knob, knobSize / 2);
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob, knobSize / 2, knobSize / 2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(content_.inKerahat ? kerahat : accent, knobRing));
    const qreal ringRadius = (knobSize - knobRing) / 2;
    painter.drawEllipse(knob, ringRadius, ringRadius);
}

} // namespace orvel
