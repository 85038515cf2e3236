#include "TightLabel.h"

#include "Symbols.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace orvel {

TightLabel::TightLabel(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TightLabel::setSymbol(const QString &name, qreal pointSize, const QColor &color)
{
    setIcon({Icon::Kind::symbol, name, pointSize, Symbols::size(name, pointSize), color});
}

void TightLabel::setCapsule(const QSizeF &size, const QColor &color)
{
    setIcon({Icon::Kind::capsule, QString(), 0, size, color});
}

void TightLabel::clearIcon()
{
    setIcon({});
}

void TightLabel::setIcon(const Icon &icon)
{
    if (icon == icon_)
        return;
    icon_ = icon;
    contentChanged();
}

void TightLabel::setText(const QString &text, const QFont &font, const QColor &color)
{
    setRuns({{text, font, color}});
}

void TightLabel::setRuns(const std::vector<Run> &runs)
{
    if (runs == runs_)
        return;
    runs_ = runs;
    setAccessibleName(text());
    contentChanged();
}

void TightLabel::setMinimumScale(qreal scale)
{
    if (qFuzzyCompare(scale, minimumScale_))
        return;
    minimumScale_ = std::clamp(scale, 0.1, 1.0);
    contentChanged();
}

void TightLabel::setElides(bool elides)
{
    if (elides == elides_)
        return;
    elides_ = elides;
    contentChanged();
}

void TightLabel::setWraps(bool wraps, const QString &separator)
{
    if (wraps == wraps_ && separator == wrapSeparator_)
        return;
    wraps_ = wraps;
    wrapSeparator_ = separator;
    contentChanged();
}

void TightLabel::setOpacity(qreal opacity)
{
    if (qFuzzyCompare(opacity, opacity_))
        return;
    opacity_ = opacity;
    update();
}

QString TightLabel::text() const
{
    QString all;
    for (const Run &run : runs_)
        all += run.text;
    return all;
}

void TightLabel::contentChanged()
{
    fitWrappedHeight();
    updateGeometry();
    update();
}

// Windows of a fixed size are sized from their contents' size hints, which cannot know the
// width; the wrapped height is therefore passed on as a minimum once the width is known.
void TightLabel::fitWrappedHeight()
{
    if (!wraps_ || width() <= 0)
        return;
    const int height = heightForWidth(width());
    if (height != minimumHeight())
        setMinimumHeight(height);
}

void TightLabel::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitWrappedHeight();
}

QFont TightLabel::scaled(const QFont &font, qreal scale) const
{
    if (qFuzzyCompare(scale, 1.0))
        return font;
    QFont copy = font;
    copy.setPointSizeF(font.pointSizeF() * scale);
    if (font.letterSpacingType() == QFont::AbsoluteSpacing)
        copy.setLetterSpacing(QFont::AbsoluteSpacing, font.letterSpacing() * scale);
    return copy;
}

TightLabel::Metrics TightLabel::measure(qreal scale) const
{
    Metrics metrics;
    qreal ascent = 0;
    qreal descent = 0;
    qreal capHeight = 0;
    for (const Run &run : runs_) {
        const QFontMetricsF font(scaled(run.font, scale));
        metrics.textWidth += font.horizontalAdvance(run.text) + run.trailingSpace * scale;
        ascent = std::max(ascent, font.ascent());
        descent = std::max(descent, font.descent());
        capHeight = std::max(capHeight, font.capHeight());
    }
    if (icon_.kind != Icon::Kind::none) {
        metrics.iconSize = icon_.size;
        metrics.textLeft = runs_.empty() ? icon_.size.width() : icon_.size.width() + spacing;
    }

    // The icon sits on the middle of the capital letters; whichever of icon and text reaches
    // further up or down sets the height.
    const qreal iconCentre = runs_.empty() ? metrics.iconSize.height() / 2 : ascent - capHeight / 2;
    const qreal iconTop = iconCentre - metrics.iconSize.height() / 2;
    const qreal top = std::min(0.0, iconTop);
    const qreal bottom = std::max(ascent + descent, iconTop + metrics.iconSize.height());
    metrics.baseline = ascent - top;
    metrics.iconTop = iconTop - top;
    metrics.size = QSizeF(metrics.textLeft + metrics.textWidth, bottom - top);
    return metrics;
}

QSize TightLabel::sizeHint() const
{
    const QSizeF size = measure(1).size;
    const QMargins margins = contentsMargins();
    return QSize(static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height())))
        .grownBy(margins);
}

QSize TightLabel::minimumSizeHint() const
{
    const Metrics natural = measure(1);
    qreal width = natural.size.width();
    if (elides_)
        width = natural.textLeft + QFontMetricsF(runs_.empty() ? font() : runs_.front().font).horizontalAdvance(u'…');
    else if (minimumScale_ < 1)
        width = natural.textLeft + natural.textWidth * minimumScale_;
    return QSize(static_cast<int>(std::ceil(width)), static_cast<int>(std::ceil(natural.size.height())))
        .grownBy(contentsMargins());
}

bool TightLabel::wrapsAt(qreal width) const
{
    if (!wraps_ || runs_.size() != 1)
        return false;
    const Metrics smallest = measure(minimumScale_);
    return smallest.textWidth > width - smallest.textLeft + 0.5;
}

// The pieces a line is filled with; joined by spaces they give the text back.
QStringList TightLabel::wrapPieces() const
{
    const QString &text = runs_.front().text;
    if (wrapSeparator_.isEmpty())
        return text.split(u' ', Qt::SkipEmptyParts);
    // The separator stays between pieces on one line and goes where a line breaks, so that no
    // line ends on a dangling "·".
    return text.split(wrapSeparator_, Qt::SkipEmptyParts);
}

QStringList TightLabel::lines(qreal width) const
{
    if (!wrapsAt(width))
        return {text()};
    const Run &run = runs_.front();
    const QFontMetricsF metrics(run.font);
    const qreal room = width - measure(1).textLeft;
    const auto fits = [&](const QString &line) { return metrics.horizontalAdvance(line) <= room; };
    const QString joiner = wrapSeparator_.isEmpty() ? QStringLiteral(" ") : wrapSeparator_;
    QStringList lines;
    QString line;
    const auto flush = [&] {
        if (!line.isEmpty())
            lines << line;
        line.clear();
    };
    for (const QString &piece : wrapPieces()) {
        const QString joined = line.isEmpty() ? piece : line + joiner + piece;
        if (fits(joined)) {
            line = joined;
            continue;
        }
        flush();
        if (fits(piece) || !piece.contains(u' ')) {
            line = piece;
            continue;
        }
        // A piece wider than the room breaks between its words.
        for (const QString &word : piece.split(u' ', Qt::SkipEmptyParts)) {
            const QString longer = line.isEmpty() ? word : line + u' ' + word;
            if (line.isEmpty() || fits(longer)) {
                line = longer;
                continue;
            }
            lines << line;
            line = word;
        }
    }
    flush();
    return lines;
}

bool TightLabel::hasHeightForWidth() const
{
    return wraps_;
}

int TightLabel::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    const qreal content = width - margins.left() - margins.right();
    if (!wrapsAt(content))
        return sizeHint().height();
    const qreal textHeight = lines(content).size() * QFontMetricsF(runs_.front().font).lineSpacing();
    const qreal height = std::max(textHeight, icon_.size.height());
    return static_cast<int>(std::ceil(height)) + margins.top() + margins.bottom();
}

void TightLabel::paintIcon(QPainter &painter, const Metrics &metrics, const QPointF &topLeft) const
{
    const QPointF origin = topLeft + QPointF(0, metrics.iconTop);
    if (icon_.kind == Icon::Kind::symbol) {
        Symbols::draw(painter, icon_.name, origin, icon_.pointSize, icon_.color);
        return;
    }
    if (icon_.kind == Icon::Kind::capsule) {
        const QRectF rect(origin, icon_.size);
        const qreal radius = std::min(rect.width(), rect.height()) / 2;
        painter.setPen(Qt::NoPen);
        painter.setBrush(icon_.color);
        painter.drawRoundedRect(rect, radius, radius);
    }
}

void TightLabel::paintEvent(QPaintEvent *)
{
    const QRectF area = contentsRect();
    const Metrics natural = measure(1);
    const qreal room = area.width() - natural.textLeft;
    qreal scale = 1;
    if (natural.textWidth > room && natural.textWidth > 0)
        scale = std::clamp(room / natural.textWidth, minimumScale_, 1.0);
    Metrics metrics = scale < 1 ? measure(scale) : natural;
    // Scaled fonts snap to whole pixel sizes, so the text may still be a little wider than the
    // room; a few smaller steps make it fit before the minimum scale is reached.
    for (int step = 0; step < 3 && scale < 1 && metrics.textWidth > room && scale > minimumScale_; ++step) {
        scale = std::max(minimumScale_, scale * room / metrics.textWidth * 0.995);
        metrics = measure(scale);
    }

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setOpacity(opacity_);
    if (wrapsAt(area.width())) {
        paintWrapped(painter, area, natural);
        return;
    }
    const QPointF topLeft(area.left(), area.top() + std::round((area.height() - metrics.size.height()) / 2));
    paintIcon(painter, metrics, topLeft);

    qreal x = topLeft.x() + metrics.textLeft;
    const qreal baseline = topLeft.y() + metrics.baseline;
    for (const Run &run : runs_) {
        const QFont font = scaled(run.font, scale);
        const QFontMetricsF fontMetrics(font);
        QString shown = run.text;
        const qreal left = area.right() - x;
        const bool overflows = fontMetrics.horizontalAdvance(shown) > left + 0.5;
        if (overflows && elides_)
            shown = fontMetrics.elidedText(shown, Qt::ElideRight, left);
        painter.setFont(font);
        painter.setPen(run.color);
        painter.drawText(QPointF(x, baseline), shown);
        if (overflows && elides_)
            break;
        x += fontMetrics.horizontalAdvance(shown) + run.trailingSpace * scale;
    }
}

// Lines of the text one under the other, the icon centred on the whole block.
void TightLabel::paintWrapped(QPainter &painter, const QRectF &area, const Metrics &metrics) const
{
    const Run &run = runs_.front();
    const QFontMetricsF font(run.font);
    const QStringList shown = lines(area.width());
    const qreal blockHeight = shown.size() * font.lineSpacing() - font.leading();
    const qreal top = area.top() + std::round((area.height() - blockHeight) / 2);
    Metrics centred = metrics;
    centred.iconTop = (blockHeight - metrics.iconSize.height()) / 2;
    paintIcon(painter, centred, QPointF(area.left(), top));

    painter.setFont(run.font);
    painter.setPen(run.color);
    qreal baseline = top + font.ascent();
    for (const QString &line : shown) {
        painter.drawText(QPointF(area.left() + metrics.textLeft, baseline), line);
        baseline += font.lineSpacing();
    }
}

} // namespace orvel
