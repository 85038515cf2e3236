#include "StatusImage.h"

#include "Colors.h"
#include "Symbols.h"
#include "TabularDigits.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <cmath>

namespace orvel::StatusImage {

namespace {

constexpr qreal height = 22;
constexpr qreal textPointSize = 13;
constexpr qreal kerning = -0.1;
constexpr qreal symbolPointSize = 13;
constexpr qreal symbolGap = 5;
constexpr qreal dotSize = 6;
constexpr qreal dotGap = 4;
constexpr qreal pillPadding = 7;
constexpr qreal pillInset = 2;
constexpr qreal pillRadius = 5;
QFont styled(QFont font)
{
    font.setPixelSize(qRound(textPointSize)); // one point is one device-independent pixel
    font.setWeight(QFont::Medium);
    font.setLetterSpacing(QFont::AbsoluteSpacing, kerning);
    return font;
}

// A ceiling that ignores floating-point noise: 14.0000001 points are 14 points.
qreal ceilWhole(qreal value) { return std::ceil(value - 1e-6); }

// Rounds halves away from zero, as the layout expects.
qreal roundHalfAway(qreal value) { return std::round(value); }

// Qt draws from the top left; the layout measures from the bottom left.
qreal topFromBottom(qreal bottom, qreal itemHeight) { return height - bottom - itemHeight; }

} // namespace

QSize Image::pointSize() const
{
    const qreal ratio = image.devicePixelRatio();
    return {qRound(image.width() / ratio), qRound(image.height() / ratio)};
}

Image Image::tinted(const QColor &color) const
{
    Image copy = *this;
    copy.image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    copy.image.setDevicePixelRatio(image.devicePixelRatio());
    QPainter painter(&copy.image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(QRectF(QPointF(0, 0), copy.image.deviceIndependentSize()), color);
    return copy;
}

QFont font()
{
    return TabularDigits::font(styled(QGuiApplication::font()));
}

Image make(const QString &symbol, const std::optional<QString> &text, Style style, bool dot, qreal devicePixelRatio)
{
    const bool adhan = style == Style::adhan;
    const bool isTemplate = style == Style::normal && !dot;
    const QColor color = adhan ? QColor(Qt::white) : isTemplate ? QColor(Qt::black) : Colors::label(Colors::current());

    const bool hasSymbol = Symbols::has(symbol);
    const bool hasText = text && !text->isEmpty();
    const QFont textFont = font();
    const QFontMetricsF metrics(textFont);

    const QSizeF symbolSize = hasSymbol ? Symbols::size(symbol, symbolPointSize) : QSizeF(0, 0);
    const QSizeF textSize = hasText ? QSizeF(metrics.horizontalAdvance(*text), metrics.lineSpacing()) : QSizeF(0, 0);
    const qreal dotWidth = dot ? dotSize : 0;
    const qreal dotSpace = dot ? dotGap : 0;
    const qreal gap = hasSymbol && hasText ? symbolGap : 0;
    const qreal pad = adhan ? pillPadding : 0;
    const qreal width = ceilWhole(2 * pad + symbolSize.width() + gap + textSize.width() + dotSpace + dotWidth);

    QImage canvas(int(ceilWhole(width * devicePixelRatio)), int(ceilWhole(height * devicePixelRatio)), QImage::Format_ARGB32_Premultiplied);
    canvas.setDevicePixelRatio(devicePixelRatio);
    canvas.fill(Qt::transparent);

    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);

    if (adhan) {
        QPainterPath pill;
        pill.addRoundedRect(QRectF(0, pillInset, width, height - 2 * pillInset), pillRadius, pillRadius);
        painter.fillPath(pill, Colors::orvelPill());
    }

    qreal x = pad;
    if (hasSymbol) {
        const qreal bottom = roundHalfAway((height - symbolSize.height()) * 0.5);
        Symbols::draw(painter, symbol, QPointF(x, topFromBottom(bottom, symbolSize.height())), symbolPointSize, color);
        x += symbolSize.width() + gap;
    }
    if (hasText) {
        const qreal bottom = roundHalfAway((height - textSize.height()) * 0.5) + 0.5;
        const qreal baseline = topFromBottom(bottom, textSize.height()) + metrics.ascent();
        painter.setFont(textFont);
        painter.setPen(color);
        painter.drawText(QPointF(x, baseline), *text);
        x += textSize.width();
    }
    if (dot) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Colors::systemOrange());
        painter.drawEllipse(QRectF(x + dotGap, (height - dotSize) * 0.5, dotSize, dotSize));
    }
    painter.end();

    return {canvas, isTemplate};
}

} // namespace orvel::StatusImage
