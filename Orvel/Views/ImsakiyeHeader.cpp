#include "ImsakiyeHeader.h"

#include "Imsakiye.h"
#include "ImsakiyeColumns.h"
#include "ViewStyle.h"

#include <QFontMetricsF>
#include <QPainter>

namespace orvel {

namespace {

constexpr qreal headingPoints = 11;
constexpr qreal lineGap = 1;

QFont headingFont()
{
    return ViewStyle::font(headingPoints, QFont::DemiBold);
}

qreal lineHeight()
{
    const QFontMetricsF metrics(headingFont());
    return metrics.ascent() + metrics.descent();
}

} // namespace

ImsakiyeHeader::ImsakiyeHeader(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ImsakiyeHeader::setContent(ImsakiyeMode mode, Appearance appearance)
{
    if (mode == mode_ && appearance == appearance_)
        return;
    const bool heightChanges = (mode == ImsakiyeMode::ramadan) != (mode_ == ImsakiyeMode::ramadan);
    mode_ = mode;
    appearance_ = appearance;
    setAccessibleName(headings().join(QStringLiteral(", ")));
    if (heightChanges)
        updateGeometry();
    update();
}

void ImsakiyeHeader::setRowSpan(qreal left, qreal right)
{
    if (qFuzzyCompare(left, rowLeft_) && qFuzzyCompare(right, rowRight_))
        return;
    rowLeft_ = left;
    rowRight_ = right;
    update();
}

QStringList ImsakiyeHeader::headings() const
{
    QStringList top{QStringLiteral("Tarih"), ViewStyle::text(Imsakiye::hijriHeading(mode_))};
    QStringList second;
    for (const Prayer::Value prayer : Prayer::all) {
        top << ViewStyle::text(Prayer(prayer).name());
        if (const auto below = Imsakiye::secondHeading(mode_, prayer))
            second << ViewStyle::text(*below);
    }
    return top + second;
}

int ImsakiyeHeader::lineCount() const
{
    return mode_ == ImsakiyeMode::ramadan ? 2 : 1;
}

QSize ImsakiyeHeader::sizeHint() const
{
    const qreal lines = lineCount() * lineHeight() + (lineCount() - 1) * lineGap;
    return {qRound(ImsakiyeColumns::minimumRowWidth()), qCeil(lines) + 2 * verticalPadding};
}

QSize ImsakiyeHeader::minimumSizeHint() const
{
    return sizeHint();
}

void ImsakiyeHeader::paintEvent(QPaintEvent *)
{
    const QFont font = headingFont();
    const QFontMetricsF metrics(font);
    const qreal right = rowRight_ > rowLeft_ ? rowRight_ : width();
    const ImsakiyeColumns::Layout columns = ImsakiyeColumns::layout(QRectF(rowLeft_, 0, right - rowLeft_, height()));
    const qreal firstBaseline = verticalPadding + metrics.ascent();
    const qreal secondBaseline = firstBaseline + lineHeight() + lineGap;

    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font);
    painter.setPen(ViewStyle::secondary(appearance_));
    painter.drawText(QPointF(columns.date.left(), firstBaseline), QStringLiteral("Tarih"));
    painter.drawText(QPointF(columns.hijri.left(), firstBaseline), ViewStyle::text(Imsakiye::hijriHeading(mode_)));
    for (const Prayer::Value prayer : Prayer::all) {
        const QRectF &column = columns.times[static_cast<size_t>(prayer)];
        const QString name = ViewStyle::text(Prayer(prayer).name());
        painter.setPen(ViewStyle::secondary(appearance_));
        painter.drawText(QPointF(column.center().x() - metrics.horizontalAdvance(name) / 2, firstBaseline), name);
        if (const auto below = Imsakiye::secondHeading(mode_, prayer)) {
            const QString text = ViewStyle::text(*below);
            painter.setPen(ViewStyle::accent(appearance_));
            painter.drawText(QPointF(column.center().x() - metrics.horizontalAdvance(text) / 2, secondBaseline), text);
        }
    }
}

} // namespace orvel
