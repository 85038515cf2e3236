#include "KerahatRow.h"

#include "PrayerRow.h"
#include "ViewStyle.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace orvel {

namespace {

constexpr qreal textPoints = 11.5;
constexpr QSizeF barSize{3, 14};
constexpr qreal cornerRadius = 7;
constexpr qreal pastOpacity = 0.42;
constexpr qreal titleGap = 4;
constexpr qreal rangeGap = 8;
constexpr qreal minimumScale = 0.85;

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
    return {300, rowHeight};
}

void KerahatRow::paintEvent(QPaintEvent *)
{
    const Appearance appearance = content_.appearance;
    const bool active = content_.state == RowState::active;
    const QColor kerahat = ViewStyle::kerahat(appearance);
    const qreal centreY = rowHeight / 2.0;

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

    const QFont rangeFont = ViewStyle::digitsFont(textPoints);
    const qreal rangeWidth = QFontMetricsF(rangeFont).horizontalAdvance(content_.range);
    const qreal titleLeft = PrayerRow::leadingPadding + PrayerRow::symbolColumn + titleGap;
    // The range ends where the prayer times end, before the bell column...
    qreal rangeRight = width() - PrayerRow::trailingPadding - PrayerRow::bellSize - PrayerRow::bellGap;

    QFont titleFont = ViewStyle::font(textPoints, active ? QFont::DemiBold : QFont::Normal);
    QFont countdownFont = ViewStyle::font(textPoints, QFont::Medium);
    QString title = ViewStyle::text(content_.interval.kind.title());
    const QString countdown = countdownText();
    const auto needed = [&] {
        return QFontMetricsF(titleFont).horizontalAdvance(title) + QFontMetricsF(countdownFont).horizontalAdvance(countdown);
    };
    const auto room = [&] { return rangeRight - rangeWidth - rangeGap - titleLeft; };
    // ...unless the title and its countdown need the room: then the range moves into the bell
    // column, the text shrinks a little, and as a last resort the title is shortened.
    if (needed() > room())
        rangeRight = width() - PrayerRow::trailingPadding;
    if (needed() > room()) {
        const qreal scale = std::max(minimumScale, room() / needed());
        titleFont.setPointSizeF(titleFont.pointSizeF() * scale);
        countdownFont.setPointSizeF(countdownFont.pointSizeF() * scale);
    }
    if (needed() > room())
        title = QFontMetricsF(titleFont).elidedText(
            title, Qt::ElideRight, room() - QFontMetricsF(countdownFont).horizontalAdvance(countdown));

    painter.setFont(titleFont);
    painter.setPen(active ? ViewStyle::primary(appearance) : ViewStyle::secondary(appearance));
    painter.drawText(QPointF(titleLeft, ViewStyle::baseline(titleFont, centreY)), title);

    if (!countdown.isEmpty()) {
        painter.setFont(countdownFont);
        painter.setPen(kerahat);
        painter.drawText(QPointF(titleLeft + QFontMetricsF(titleFont).horizontalAdvance(title),
                                 ViewStyle::baseline(countdownFont, centreY)),
                         countdown);
    }

    painter.setFont(rangeFont);
    painter.setPen(ViewStyle::secondary(appearance));
    painter.drawText(QPointF(rangeRight - rangeWidth, ViewStyle::baseline(rangeFont, centreY)), content_.range);
}

} // namespace orvel
