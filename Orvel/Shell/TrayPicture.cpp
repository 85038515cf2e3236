#include "TrayPicture.h"

#include "AppModel.h"
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

QColor glyphColor(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(245, 245, 245) : QColor(30, 30, 30);
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
void drawWithRemaining(QPainter &painter, const Face &face, Appearance appearance, qreal side)
{
    const QColor color = glyphColor(appearance);
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
    if (minutes < hour)
        return QString::number(std::max<int64_t>(minutes, 0));
    return QString::number(minutes / hour) + u's';
}

Face face(const AppModel &model, bool panelShowsLabel)
{
    const StatusLine line = model.statusLine();
    Face face{line.state, {}};
    if (line.state == State::entry || !model.showsIconRemaining(panelShowsLabel))
        return face;
    if (const std::optional<PrayerStatus> status = model.status())
        face.remaining = remainingText(status->minutesRemaining);
    return face;
}

QImage image(const Face &face, Appearance appearance, int pixels)
{
    QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const qreal side = pixels;

    if (!face.remaining.isEmpty() && face.state != State::entry) {
        drawWithRemaining(painter, face, appearance, side);
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
        drawSymbol(painter, QRectF(0, side * 0.04, side * 0.82, side * 0.82), glyphColor(appearance));
        const qreal dot = side * 0.36;
        drawDot(painter, QRectF(side - dot, side - dot, dot, dot), appearance);
        break;
    }
    case State::normal:
        drawSymbol(painter, QRectF(side * 0.06, side * 0.06, side * 0.88, side * 0.88), glyphColor(appearance));
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

} // namespace orvel::TrayPicture
