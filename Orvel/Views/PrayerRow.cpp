#include "PrayerRow.h"

#include "SymbolButton.h"
#include "Symbols.h"
#include "ViewStyle.h"

#include <QFontMetricsF>
#include <QPainter>

namespace orvel {

namespace {

constexpr qreal textPoints = 13.5;
constexpr qreal symbolPoints = 14;
constexpr qreal bellPoints = 11;
constexpr qreal nameGap = 4;
constexpr qreal badgePoints = 10;
constexpr qreal badgeGap = 7;
constexpr qreal badgePaddingX = 6;
constexpr qreal badgePaddingY = 1.5;
constexpr qreal captionPoints = 11;
constexpr qreal captionGap = 6;
constexpr qreal cornerRadius = 9;
using ViewStyle::pastOpacity;

QFont::Weight nameWeight(PrayerRowState state)
{
    switch (state) {
    case PrayerRowState::current:
        return QFont::DemiBold;
    case PrayerRowState::next:
        return QFont::Medium;
    default:
        return QFont::Normal;
    }
}

// Draws the text with its capitals centred on centreY; gives its advance.
qreal drawText(QPainter &painter, qreal x, qreal centreY, const QString &text, const QFont &font, const QColor &color)
{
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QPointF(x, ViewStyle::baseline(font, centreY)), text);
    return QFontMetricsF(font).horizontalAdvance(text);
}

} // namespace

PrayerRow::PrayerRow(QWidget *parent)
    : QWidget(parent)
    , bell_(new SymbolButton(this))
{
    bell_->setObjectName(QStringLiteral("bell"));
    setFixedHeight(rowHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    bell_->setHitSize(QSize(bellSize, bellSize));
    connect(bell_, &QAbstractButton::clicked, this, [this] { emit toggleRequested(content_.prayer); });
    // An impossible state forces the first setContent to draw.
    content_.time = QStringLiteral("-");
}

void PrayerRow::setContent(const Content &content)
{
    if (content == content_)
        return;
    content_ = content;

    const Appearance appearance = content.appearance;
    const bool current = content.state == RowState::current;
    bell_->setContent(content.notify ? QStringLiteral("bell") : QStringLiteral("bell.slash"), bellPoints, QString(),
                      QFont(), current ? ViewStyle::accent(appearance) : ViewStyle::tertiary(appearance));
    bell_->setOpacity(content.state == RowState::past ? pastOpacity : 1.0);
    const QString tip = PanelRules::bellToolTip(content.prayer, content.notify);
    bell_->setToolTip(tip);
    bell_->setAccessibleName(tip);
    setAccessibleName(PanelRules::rowAccessibleName(content.prayer, content.time, content.state));
    update();
}

QSize PrayerRow::sizeHint() const
{
    return {300, rowHeight};
}

void PrayerRow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeBell();
}

void PrayerRow::placeBell()
{
    bell_->move(width() - trailingPadding - bellSize, (rowHeight - bellSize) / 2);
}

void PrayerRow::paintEvent(QPaintEvent *)
{
    const Appearance appearance = content_.appearance;
    const RowState state = content_.state;
    const QColor accent = ViewStyle::accent(appearance);
    const QColor primary = ViewStyle::primary(appearance);
    const QColor secondary = ViewStyle::secondary(appearance);
    const qreal centreY = rowHeight / 2.0;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    if (state == RowState::current) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ViewStyle::faded(accent, 0.13));
        painter.drawRoundedRect(QRectF(rect()), cornerRadius, cornerRadius);
    }
    if (state == RowState::past)
        painter.setOpacity(pastOpacity);

    const QString symbol = ViewStyle::text(content_.prayer.symbol());
    const QSizeF symbolSize = Symbols::size(symbol, symbolPoints);
    Symbols::draw(painter, symbol,
                  QPointF(leadingPadding + (symbolColumn - symbolSize.width()) / 2, centreY - symbolSize.height() / 2),
                  symbolPoints, state == RowState::current ? accent : secondary);

    qreal x = leadingPadding + symbolColumn + nameGap;
    x += drawText(painter, x, centreY, ViewStyle::text(content_.prayer.name()),
                  ViewStyle::font(textPoints, nameWeight(state)), primary);

    if (state == RowState::current) {
        const QFont badgeFont = ViewStyle::font(badgePoints, QFont::DemiBold);
        const QFontMetricsF metrics(badgeFont);
        const QString badge = QStringLiteral("Şimdi");
        const qreal textHeight = metrics.height();
        const QRectF capsule(x + badgeGap, centreY - textHeight / 2 - badgePaddingY,
                             metrics.horizontalAdvance(badge) + 2 * badgePaddingX, textHeight + 2 * badgePaddingY);
        painter.setPen(Qt::NoPen);
        painter.setBrush(accent);
        painter.drawRoundedRect(capsule, capsule.height() / 2, capsule.height() / 2);
        drawText(painter, capsule.left() + badgePaddingX, centreY, badge, badgeFont, Qt::white);
        x = capsule.right();
    }
    if (state == RowState::next) {
        x += captionGap;
        x += drawText(painter, x, centreY, QStringLiteral("sıradaki"), ViewStyle::font(captionPoints, QFont::Medium),
                      accent);
    }
    if (content_.tag) {
        x += captionGap;
        drawText(painter, x, centreY, *content_.tag, ViewStyle::font(captionPoints), secondary);
    }

    const QFont timeFont = ViewStyle::digitsFont(textPoints, QFont::Medium);
    const qreal timeWidth = QFontMetricsF(timeFont).horizontalAdvance(content_.time);
    drawText(painter, width() - trailingPadding - bellSize - bellGap - timeWidth, centreY, content_.time, timeFont,
             primary);
}

} // namespace orvel
