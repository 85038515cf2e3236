#include "TrayPicture.h"

#include "Symbols.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace orvel::TrayPicture {

namespace {

constexpr auto symbolName = "moon";
// Above the digits the crescent has half the room; filled, it still reads as one.
constexpr auto smallSymbolName = "moon.fill";
constexpr std::array<int, 6> iconSizes{16, 22, 24, 32, 48, 64};
// Bold digits of equal width that Debian installs with the desktop; the same on every machine
// that has it, so the countdown does not wobble from minute to minute.
const QString digitFamily = QStringLiteral("DejaVu Sans");

// Light ink means a dark panel.
Appearance panelAppearance(const QColor &ink)
{
    return ink.lightnessF() > 0.5 ? Appearance::dark : Appearance::light;
}

// The largest point size at which the symbol fits `box` pixels each way.
qreal fittingPointSize(const QString &name, qreal box)
{
    const QSizeF unit = Symbols::size(name, 1.0);
    const qreal largest = std::max(unit.width(), unit.height());
    return largest > 0 ? box / largest : box;
}

void drawSymbol(QPainter &painter, const QRectF &box, const QColor &color, const char *symbol = symbolName)
{
    const QString name = QString::fromLatin1(symbol);
    const qreal pointSize = fittingPointSize(name, std::min(box.width(), box.height()));
    const QSizeF size = Symbols::size(name, pointSize);
    const QPointF origin(box.center().x() - size.width() / 2, box.center().y() - size.height() / 2);
    Symbols::draw(painter, name, origin, pointSize, color);
}

void drawDot(QPainter &painter, const QRectF &square, Appearance appearance)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors::systemOrange(appearance));
    painter.drawEllipse(square);
}

// Over half the square high, smaller only when the text ("23s") would not fit the width.
QFont digitFont(const QString &text, int pixels)
{
    QFont font(digitFamily);
    font.setBold(true);
    // Full hinting thins the stems to one pixel at tray sizes; vertical hinting keeps them bold.
    font.setHintingPreference(QFont::PreferVerticalHinting);
    for (int size = static_cast<int>(std::lround(pixels * 0.55)); size > 6; --size) {
        font.setPixelSize(size);
        if (QFontMetricsF(font).horizontalAdvance(text) <= pixels)
            break;
    }
    return font;
}

// Crescent above, digits below, both as large as the square allows; the kerahat dot sits in the
// top right corner beside the crescent.
void drawWithRemaining(QPainter &painter, const Face &face, const QColor &color, qreal side)
{
    const Appearance appearance = panelAppearance(color);
    const QFont font = digitFont(face.remaining, static_cast<int>(side));
    const QFontMetricsF metrics(font);
    const qreal digitHeight = metrics.tightBoundingRect(QStringLiteral("0")).height();
    const qreal baseline = std::round(side - side * 0.03);
    const qreal top = baseline - digitHeight;
    const qreal gap = std::max(1.0, std::round(side * 0.05));
    const qreal symbolBox = top - gap;

    if (face.state == State::kerahat) {
        drawSymbol(painter, QRectF(side * 0.12, 0, symbolBox, symbolBox), color, smallSymbolName);
        const qreal dot = std::round(side * 0.32);
        drawDot(painter, QRectF(side - dot, 0, dot, dot), appearance);
    } else {
        drawSymbol(painter, QRectF((side - symbolBox) / 2, 0, symbolBox, symbolBox), color, smallSymbolName);
    }
    painter.setFont(font);
    painter.setPen(color);
    const qreal width = metrics.horizontalAdvance(face.remaining);
    painter.drawText(QPointF(std::round((side - width) / 2), baseline), face.remaining);
}

} // namespace

QString remainingText(int64_t minutes)
{
    constexpr int64_t hour = 60;
    constexpr int64_t mostMinutes = 99;
    if (minutes <= mostMinutes)
        return QString::number(std::max<int64_t>(minutes, 0));
    return QString::number(minutes / hour) + QStringLiteral("sa");
}

Face face(const StatusItemContent &content, bool panelShowsLabel)
{
    Face face{content.line.state, {}};
    if (content.line.state == State::entry || !content.showsIconRemaining(panelShowsLabel))
        return face;
    if (content.minutesRemaining)
        face.remaining = remainingText(*content.minutesRemaining);
    return face;
}

QColor ink(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(245, 245, 245) : QColor(30, 30, 30);
}

QImage image(const Face &face, Appearance appearance, int pixels)
{
    return image(face, ink(appearance), pixels);
}

QImage image(const Face &face, const QColor &ink, int pixels)
{
    const Appearance appearance = panelAppearance(ink);
    QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const qreal side = pixels;

    if (!face.remaining.isEmpty() && face.state != State::entry) {
        drawWithRemaining(painter, face, ink, side);
        return picture;
    }
    switch (face.state) {
    case State::entry: {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Colors::orvelPill());
        painter.drawEllipse(QRectF(0, 0, side, side));
        const qreal inset = side * 0.2;
        drawSymbol(painter, QRectF(inset, inset, side - 2 * inset, side - 2 * inset), Qt::white);
        break;
    }
    case State::kerahat: {
        drawSymbol(painter, QRectF(0, side * 0.04, side * 0.82, side * 0.82), ink);
        const qreal dot = side * 0.36;
        drawDot(painter, QRectF(side - dot, side - dot, dot, dot), appearance);
        break;
    }
    case State::normal:
        drawSymbol(painter, QRectF(side * 0.06, side * 0.06, side * 0.88, side * 0.88), ink);
        break;
    }
    return picture;
}

QImage image(State state, Appearance appearance, int pixels)
{
    return image(Face{state, {}}, appearance, pixels);
}

QIcon icon(const Face &face, Appearance appearance)
{
    QIcon icon;
    for (const int pixels : iconSizes)
        icon.addPixmap(QPixmap::fromImage(image(face, appearance, pixels)));
    return icon;
}

namespace {

constexpr int svgSide = 16;

// The outline as SVG path data, in the coordinates it was drawn in. The unions that build a
// symbol leave many tiny segments; those shorter than a fiftieth of a pixel are dropped.
QString pathData(const QPainterPath &path)
{
    constexpr qreal shortest = 0.02;
    QString data;
    QPointF last;
    const auto number = [](qreal value) { return QString::number(value, 'f', 2); };
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        switch (element.type) {
        case QPainterPath::MoveToElement:
            data += u'M' + number(element.x) + u' ' + number(element.y);
            last = element;
            break;
        case QPainterPath::LineToElement:
            if (QLineF(last, element).length() < shortest)
                break;
            data += u'L' + number(element.x) + u' ' + number(element.y);
            last = element;
            break;
        case QPainterPath::CurveToElement: {
            const QPainterPath::Element c2 = path.elementAt(i + 1);
            const QPainterPath::Element end = path.elementAt(i + 2);
            data += u'C' + number(element.x) + u' ' + number(element.y) + u' ' + number(c2.x) + u' ' + number(c2.y)
                + u' ' + number(end.x) + u' ' + number(end.y);
            last = end;
            i += 2;
            break;
        }
        case QPainterPath::CurveToDataElement:
            break;
        }
    }
    return data;
}

// The crescent's outline fitted into a box of the square.
QPainterPath crescentIn(const QRectF &box)
{
    const QString name = QString::fromLatin1(symbolName);
    const qreal pointSize = fittingPointSize(name, std::min(box.width(), box.height()));
    const QSizeF size = Symbols::size(name, pointSize);
    return Symbols::outline(name, pointSize)
        .translated(box.center().x() - size.width() / 2, box.center().y() - size.height() / 2);
}

} // namespace

QString symbolicName(State state)
{
    switch (state) {
    case State::kerahat:
        return QStringLiteral("io.github.orvel.Orvel-kerahat-symbolic");
    case State::entry:
        return QStringLiteral("io.github.orvel.Orvel-entry-symbolic");
    case State::normal:
        break;
    }
    return QStringLiteral("io.github.orvel.Orvel-symbolic");
}

QByteArray symbolicSvg(State state)
{
    const qreal side = svgSide;
    QString shapes;
    const auto shape = [&](const QString &classes, const QString &data, const QString &rule = QStringLiteral("nonzero")) {
        shapes += QStringLiteral("  <path class=\"%1\" fill=\"currentColor\" fill-rule=\"%2\" d=\"%3\"/>\n")
                      .arg(classes, rule, data);
    };
    switch (state) {
    case State::entry: {
        // The disc with the crescent cut out of it, so that one colour still shows both.
        QPainterPath disc;
        disc.addEllipse(QRectF(0, 0, side, side));
        const qreal inset = side * 0.2;
        const QPainterPath cut = disc.subtracted(crescentIn(QRectF(inset, inset, side - 2 * inset, side - 2 * inset)));
        shape(QStringLiteral("success ColorScheme-PositiveText"), pathData(cut));
        break;
    }
    case State::kerahat: {
        shape(QStringLiteral("ColorScheme-Text"), pathData(crescentIn(QRectF(0, side * 0.04, side * 0.82, side * 0.82))));
        const qreal dot = side * 0.36;
        QPainterPath circle;
        circle.addEllipse(QRectF(side - dot, side - dot, dot, dot));
        shape(QStringLiteral("warning ColorScheme-NeutralText"), pathData(circle));
        break;
    }
    case State::normal:
        shape(QStringLiteral("ColorScheme-Text"),
              pathData(crescentIn(QRectF(side * 0.06, side * 0.06, side * 0.88, side * 0.88))));
        break;
    }
    const QString svg = QStringLiteral(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%1\" viewBox=\"0 0 %1 %1\">\n"
        "  <style type=\"text/css\" id=\"current-color-scheme\">"
        ".ColorScheme-Text { color:#232629; } .ColorScheme-NeutralText { color:#f67400; } "
        ".ColorScheme-PositiveText { color:#27ae60; }</style>\n%2</svg>\n")
                            .arg(svgSide)
                            .arg(shapes);
    return svg.toUtf8();
}

} // namespace orvel::TrayPicture
