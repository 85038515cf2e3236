#include "Spinner.h"

#include <QPainter>

namespace orvel {

namespace {

constexpr int stepMs = 80;
constexpr qreal spokeWidth = 2;
constexpr qreal innerRadiusShare = 0.45;
constexpr qreal faintest = 0.18;

} // namespace

Spinner::Spinner(QWidget *parent)
    : QWidget(parent)
    , color_(Qt::gray)
{
    timer_.setInterval(stepMs);
    connect(&timer_, &QTimer::timeout, this, [this] {
        phase_ = (phase_ + 1) % spokes;
        update();
    });
    setAccessibleName(QStringLiteral("Yükleniyor"));
}

void Spinner::setColor(const QColor &color)
{
    if (color == color_)
        return;
    color_ = color;
    update();
}

QSize Spinner::sizeHint() const
{
    return {diameter, diameter};
}

void Spinner::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    timer_.start();
}

void Spinner::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    timer_.stop();
}

void Spinner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    const qreal outer = diameter / 2.0;
    const qreal inner = outer * innerRadiusShare;
    for (int spoke = 0; spoke < spokes; ++spoke) {
        // The spoke at the phase is the brightest; those behind it fade out.
        const int age = (phase_ - spoke + spokes) % spokes;
        QColor color = color_;
        color.setAlphaF(static_cast<float>(color_.alphaF() * (1.0 - (1.0 - faintest) * age / (spokes - 1))));
        painter.save();
        painter.rotate(360.0 * spoke / spokes);
        painter.setPen(QPen(color, spokeWidth, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -inner), QPointF(0, -outer + spokeWidth / 2));
        painter.restore();
    }
}

} // namespace orvel
