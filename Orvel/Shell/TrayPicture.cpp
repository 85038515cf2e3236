#include "TrayPicture.h"

#include "Symbols.h"

#include <QPainter>

#include <algorithm>
#include <array>

namespace orvel::TrayPicture {

namespace {

constexpr auto symbolName = "moon";
constexpr std::array<int, 6> iconSizes{16, 22, 24, 32, 48, 64};

QColor glyphColor(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(245, 245, 245) : QColor(30, 30, 30);
}

// The largest point size at which the symbol fits `box` pixels each way.
qreal fittingPointSize(qreal box)
{
    const QSizeF unit = Symbols::size(QString::fromLatin1(symbolName), 1.0);
    const qreal largest = std::max(unit.width(), unit.height());
    return largest > 0 ? box / largest : box;
}

void drawSymbol(QPainter &painter, const QRectF &box, const QColor &color)
{
    const QString name = QString::fromLatin1(symbolName);
    const qreal pointSize = fittingPointSize(std::min(box.width(), box.height()));
    const QSizeF size = Symbols::size(name, pointSize);
    const QPointF origin(box.center().x() - size.width() / 2, box.center().y() - size.height() / 2);
    Symbols::draw(painter, name, origin, pointSize, color);
}

} // namespace

QImage image(State state, Appearance appearance, int pixels)
{
    QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal side = pixels;

    switch (state) {
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
        painter.setPen(Qt::NoPen);
        painter.setBrush(Colors::systemOrange(appearance));
        painter.drawEllipse(QRectF(side - dot, side - dot, dot, dot));
        break;
    }
    case State::normal:
        drawSymbol(painter, QRectF(side * 0.06, side * 0.06, side * 0.88, side * 0.88), glyphColor(appearance));
        break;
    }
    return picture;
}

QIcon icon(State state, Appearance appearance)
{
    QIcon icon;
    for (const int pixels : iconSizes)
        icon.addPixmap(QPixmap::fromImage(image(state, appearance, pixels)));
    return icon;
}

} // namespace orvel::TrayPicture
