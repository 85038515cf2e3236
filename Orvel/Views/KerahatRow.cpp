#include "KerahatRow.h"

#include "PrayerRow.h"
#include "ViewStyle.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr qreal textPoints = 11.5;
constexpr QSizeF barSize{3, 14};
constexpr qreal cornerRadius = 7;
using ViewStyle::pastOpacity;
constexpr qreal titleGap = 4;
constexpr qreal rangeGap = 8;
constexpr qreal minimumScale = 0.85;
constexpr int twoLinePadding = 8;

} // namespace

KerahatRow::KerahatRow(QWidget *parent)
    : QWidget(parent)
{
    setFixedHeight(rowHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    content_.range = QStringLiteral("-");
}

void KerahatRow::setContent(const Content &content)
{
    if (content == content_)
        return;
    content_ = content;
    setAccessibleName(content.accessibleName);
    fitHeight();
    update();
}

QString KerahatRow::countdownText() const
{
    if (!content_.countdown)
        return QString();
    return QStringLiteral(" · ") + *content_.countdown + QStringLiteral(" sonra");
}

QSize KerahatRow::sizeHint() const
{
    return {300, height()};
}

KerahatRow::Arrangement KerahatRow::arrange(qreal width) const
{
    const bool active = content_.state == RowState::active;
    Arrangement a;
    a.rangeFont = ViewStyle::digitsFont(textPoints);
    a.titleFont = ViewStyle::font(textPoints, active ? QFont::DemiBold : QFont::Normal);
    a.countdownFont = ViewStyle::font(textPoints, QFont::Medium);
    a.title = ViewStyle::text(content_.interval.kind.title());
    a.countdown = countdownText();
    const qreal titleLeft = PrayerRow::leadingPadding + PrayerRow::symbolColumn + titleGap;
    const qreal rangeWidth = QFontMetricsF(a.rangeFont).horizontalAdvance(content_.range);
    const qreal alignedRight = width - PrayerRow::trailingPadding - PrayerRow::bellSize - PrayerRow::bellGap;
    // The range always ends where the prayer times end, before the bell column; the text yields.
    a.rangeRight = alignedRight;
    const auto needed = [&] {
        return QFontMetricsF(a.titleFont).horizontalAdvance(a.title)
            + QFontMetricsF(a.countdownFont).horizontalAdvance(a.countdown);
    };
    const auto room = [&] { return a.rangeRight - rangeWidth - rangeGap - titleLeft; };
    // First the text shrinks a little.
    if (needed() > room()) {
        const qreal scale = std::max(minimumScale, room() / needed());
        a.titleFont.setPointSizeF(a.titleFont.pointSizeF() * scale);
        a.countdownFont.setPointSizeF(a.countdownFont.pointSizeF() * scale);
    }
    if (needed() <= room())
        return a;
    // Still too long: the countdown goes under the title rather than cut the title short.
    if (!a.countdown.isEmpty()) {
        a.countdownBelow = true;
        a.titleFont.setPointSizeF(ViewStyle::font(textPoints).pointSizeF());
        a.countdownFont.setPointSizeF(a.titleFont.pointSizeF());
        a.countdown = *content_.countdown + QStringLiteral(" sonra");
        a.rangeRight = alignedRight;
    }
    const qreal titleRoom = room() - (a.countdownBelow ? 0 : QFontMetricsF(a.countdownFont).horizontalAdvance(a.countdown));
    a.title = QFontMetricsF(a.titleFont).elidedText(a.title, Qt::ElideRight, titleRoom);
    return a;
}

int KerahatRow::heightFor(const Arrangement &arrangement) const
{
    if (!arrangement.countdownBelow)
        return rowHeight;
    const qreal lines = QFontMetricsF(arrangement.titleFont).height() + QFontMetricsF(arrangement.countdownFont).height();
    return std::max(rowHeight, static_cast<int>(std::ceil(lines)) + twoLinePadding);
}

// Panels of a fixed size are sized from their rows' hints, so a row that needs two lines at its
// width says so through its own height.
void KerahatRow::fitHeight()
{
    const int height = heightFor(arrange(width()));
    if (height != this->height() || minimumHeight() != maximumHeight())
        setFixedHeight(height);
}

void KerahatRow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitHeight();
}

void KerahatRow::paintEvent(QPaintEvent *)
{
    const Appearance appearance = content_.appearance;
    const bool active = content_.state == RowState::active;
    const QColor kerahat = ViewStyle::kerahat(appearance);
    const qreal centreY = height() / 2.0;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    if (active) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ViewStyle::faded(kerahat, 0.13));
        painter.drawRoundedRect(QRectF(rect()), cornerRadius, cornerRadius);
    }
    if (content_.state == RowState::past)
        painter.setOpacity(pastOpacity);

    // The bar lines up with the prayer rows' symbols.
    const QRectF bar(PrayerRow::leadingPadding + (PrayerRow::symbolColumn - barSize.width()) / 2,
                     centreY - barSize.height() / 2, barSize.width(), barSize.height());
    painter.setPen(Qt::NoPen);
    painter.setBrush(ViewStyle::faded(kerahat, active ? 1.0 : 0.7));
    painter.drawRoundedRect(bar, barSize.width() / 2, barSize.width() / 2);

    const Arrangement a = arrange(width());
    const qreal titleLeft = PrayerRow::leadingPadding + PrayerRow::symbolColumn + titleGap;
    const QFontMetricsF titleMetrics(a.titleFont);
    const QFontMetricsF countdownMetrics(a.countdownFont);
    const qreal titleCentre = a.countdownBelow ? centreY - countdownMetrics.height() / 2 : centreY;

    painter.setFont(a.titleFont);
    painter.setPen(active ? ViewStyle::primary(appearance) : ViewStyle::secondary(appearance));
    painter.drawText(QPointF(titleLeft, ViewStyle::baseline(a.titleFont, titleCentre)), a.title);

    if (!a.countdown.isEmpty()) {
        painter.setFont(a.countdownFont);
        painter.setPen(kerahat);
        const QPointF at = a.countdownBelow
            ? QPointF(titleLeft, ViewStyle::baseline(a.countdownFont, centreY + titleMetrics.height() / 2))
            : QPointF(titleLeft + titleMetrics.horizontalAdvance(a.title), ViewStyle::baseline(a.countdownFont, centreY));
        painter.drawText(at, a.countdown);
    }

    const qreal rangeWidth = QFontMetricsF(a.rangeFont).horizontalAdvance(content_.range);
    painter.setFont(a.rangeFont);
    painter.setPen(ViewStyle::secondary(appearance));
    painter.drawText(QPointF(a.rangeRight - rangeWidth, ViewStyle::baseline(a.rangeFont, centreY)), content_.range);
}

} // namespace orvel
