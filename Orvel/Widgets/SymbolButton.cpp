#include "SymbolButton.h"

#include "TightLabel.h"

#include <QEvent>
#include <QFocusEvent>
#include <QPainter>

#include <algorithm>

namespace orvel {

namespace {

constexpr qreal pressedOpacity = 0.55;
constexpr qreal hoverFill = 0.2;
constexpr qreal hoverTextBoost = 1.6;
constexpr qreal cornerRadius = 6;

} // namespace

SymbolButton::SymbolButton(QWidget *parent)
    : QAbstractButton(parent)
    , label_(new TightLabel(this))
{
    label_->setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::pressed, this, &SymbolButton::refreshLabel);
    connect(this, &QAbstractButton::released, this, &SymbolButton::refreshLabel);
}

void SymbolButton::setContent(const QString &symbol, qreal symbolPoints, const QString &title, const QFont &font,
                              const QColor &color)
{
    if (symbol == symbol_ && qFuzzyCompare(symbolPoints, symbolPoints_) && title == title_ && font == font_
        && color == color_)
        return;
    symbol_ = symbol;
    symbolPoints_ = symbolPoints;
    title_ = title;
    font_ = font;
    color_ = color;
    // setText would replace the shortcut by the title's mnemonic; titles here have none.
    const QKeySequence keys = shortcut();
    setText(title);
    setShortcut(keys);
    refreshLabel();
    updateGeometry();
}

void SymbolButton::setOpacity(qreal opacity)
{
    if (qFuzzyCompare(opacity, opacity_))
        return;
    opacity_ = opacity;
    refreshLabel();
}

void SymbolButton::setHitSize(const QSize &size)
{
    fixedHit_ = true;
    setFixedSize(size);
}

QString SymbolButton::symbol() const
{
    return symbol_;
}

void SymbolButton::refreshLabel()
{
    QColor color = color_;
    if (underMouse() && !fixedHit_ && isEnabled())
        color.setAlphaF(static_cast<float>(std::min(1.0, color.alphaF() * hoverTextBoost)));
    if (symbol_.isEmpty())
        label_->clearIcon();
    else
        label_->setSymbol(symbol_, symbolPoints_, color);
    if (title_.isEmpty())
        label_->setRuns({});
    else
        label_->setText(title_, font_, color);
    label_->setOpacity(opacity_ * (isDown() ? pressedOpacity : 1.0));
    label_->resize(label_->sizeHint());
    label_->move((width() - label_->width()) / 2, (height() - label_->height()) / 2);
    update();
}

QSize SymbolButton::sizeHint() const
{
    return fixedHit_ ? size() : label_->sizeHint();
}

QSize SymbolButton::minimumSizeHint() const
{
    return sizeHint();
}

bool SymbolButton::event(QEvent *event)
{
    const bool handled = QAbstractButton::event(event);
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave
        || event->type() == QEvent::EnabledChange)
        refreshLabel();
    return handled;
}

void SymbolButton::focusInEvent(QFocusEvent *event)
{
    keyboardFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QAbstractButton::focusInEvent(event);
}

void SymbolButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (fixedHit_ && underMouse() && isEnabled()) {
        QColor fill = color_;
        fill.setAlphaF(static_cast<float>(std::min(1.0, color_.alphaF() * hoverFill)));
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(area, cornerRadius, cornerRadius);
    }
    if (hasFocus() && keyboardFocus_) {
        QColor ring = palette().color(QPalette::Highlight);
        ring.setAlphaF(0.7f);
        painter.setPen(QPen(ring, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    }
}

void SymbolButton::resizeEvent(QResizeEvent *event)
{
    QAbstractButton::resizeEvent(event);
    refreshLabel();
}

} // namespace orvel
