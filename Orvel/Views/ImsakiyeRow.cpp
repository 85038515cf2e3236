#include "ImsakiyeRow.h"

#include "ImsakiyeColumns.h"
#include "ViewStyle.h"

#include <QFontMetricsF>
#include <QPainter>

namespace orvel {

namespace {

constexpr qreal textPoints = 12.5;
constexpr qreal notePoints = 10;
constexpr qreal cornerRadius = 7;
// The note sits close under the date: the two lines read as one entry.
constexpr qreal noteLead = -1;
// A long note may reach a little into the gap before the Hijri column.
constexpr qreal noteOverhang = 10;

QString fromStd(const std::string &text)
{
    return QString::fromStdString(text);
}

} // namespace

ImsakiyeRow::ImsakiyeRow(QWidget *parent)
    : QWidget(parent)
{
    setFixedHeight(rowHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // An impossible day forces the first setContent to draw.
    content_.row.day.month = 0;
}

void ImsakiyeRow::setContent(const Content &content)
{
    if (content == content_)
        return;
    content_ = content;
    setAccessibleName(accessibleText(content));
    // A long note ("Ramazan Bayramı (1. Gün)") is cut to the date's column; the tip shows it whole.
    setToolTip(content.row.note ? fromStd(*content.row.note) : QString());
    update();
}

QSize ImsakiyeRow::sizeHint() const
{
    return {qRound(ImsakiyeColumns::minimumRowWidth()), rowHeight};
}

QString ImsakiyeRow::accessibleText(const Content &content)
{
    const Imsakiye::Row &row = content.row;
    QStringList parts{fromStd(row.date), fromStd(row.hijri)};
    if (row.note)
        parts << fromStd(*row.note);
    for (const Prayer::Value prayer : Prayer::all)
        parts << ViewStyle::text(Prayer(prayer).name()) + u' ' + fromStd(row.times[static_cast<size_t>(prayer)]);
    if (row.isToday)
        parts << QStringLiteral("bugün");
    return parts.join(QStringLiteral(", "));
}

void ImsakiyeRow::paintEvent(QPaintEvent *)
{
    const Imsakiye::Row &row = content_.row;
    const Appearance appearance = content_.appearance;
    const QColor accent = ViewStyle::accent(appearance);
    const QColor primary = ViewStyle::primary(appearance);
    const qreal centreY = height() / 2.0;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    if (row.isToday) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ViewStyle::faded(accent, todayFill));
        painter.drawRoundedRect(QRectF(rect()), cornerRadius, cornerRadius);
    }
    if (Imsakiye::isDimmed(row))
        painter.setOpacity(pastOpacity);

    const ImsakiyeColumns::Layout columns = ImsakiyeColumns::layout(QRectF(rect()));

    const QFont dateFont = ViewStyle::digitsFont(textPoints, row.isToday ? QFont::DemiBold : QFont::Normal);
    painter.setFont(dateFont);
    painter.setPen(primary);
    if (!row.note) {
        painter.drawText(QPointF(columns.date.left(), ViewStyle::baseline(dateFont, centreY)), fromStd(row.date));
    } else {
        const QFont noteFont = ViewStyle::font(notePoints, QFont::DemiBold);
        const QFontMetricsF dateMetrics(dateFont);
        const QFontMetricsF noteMetrics(noteFont);
        const qreal block = dateMetrics.ascent() + dateMetrics.descent() + noteLead + noteMetrics.ascent()
            + noteMetrics.descent();
        const qreal top = centreY - block / 2;
        const qreal dateBaseline = top + dateMetrics.ascent();
        painter.drawText(QPointF(columns.date.left(), dateBaseline), fromStd(row.date));
        const QString note = noteMetrics.elidedText(fromStd(*row.note), Qt::ElideRight,
                                                    columns.date.width() + noteOverhang);
        painter.setFont(noteFont);
        painter.setPen(accent);
        painter.drawText(QPointF(columns.date.left(), dateBaseline + dateMetrics.descent() + noteLead + noteMetrics.ascent()),
                         note);
    }

    const QFont hijriFont = ViewStyle::digitsFont(textPoints);
    painter.setFont(hijriFont);
    painter.setPen(ViewStyle::secondary(appearance));
    painter.drawText(QPointF(columns.hijri.left(), ViewStyle::baseline(hijriFont, centreY)), fromStd(row.hijri));

    for (const Prayer::Value prayer : Prayer::all) {
        const size_t index = static_cast<size_t>(prayer);
        const bool highlighted = Imsakiye::isHighlighted(content_.mode, prayer);
        const QFont font = ViewStyle::digitsFont(textPoints, highlighted || row.isToday ? QFont::DemiBold : QFont::Normal);
        const QString time = fromStd(row.times[index]);
        const QRectF &column = columns.times[index];
        const qreal width = QFontMetricsF(font).horizontalAdvance(time);
        painter.setFont(font);
        painter.setPen(highlighted ? accent : primary);
        painter.drawText(QPointF(column.center().x() - width / 2, ViewStyle::baseline(font, centreY)), time);
    }
}

} // namespace orvel
