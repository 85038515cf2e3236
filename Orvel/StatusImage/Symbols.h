#pragma once

#include <QColor>
#include <QPainter>
#include <QImage>
#include <QPainterPath>
#include <QSizeF>
#include <QString>
#include <QStringList>

namespace orvel {

// Orvel's own vector symbols, looked up by name ("moon", "sunrise", "bell.slash", …) and drawn
// with QPainterPath on one grid, so they look the same on every machine.
namespace Symbols {

bool has(const QString &name);
// Every known name, sorted.
QStringList names();
// The symbol's size in points at a point size (its width varies by symbol; the
// height is pointSize × 16/13, the ink about pointSize).
QSizeF size(const QString &name, qreal pointSize);
// Draws the symbol with its top-left corner at `origin`, filled in `color`.
void draw(QPainter &painter, const QString &name, const QPointF &origin, qreal pointSize, const QColor &color);
// The symbol's filled outline in points with its top-left corner at the origin (for vector
// output); empty for an unknown name.
QPainterPath outline(const QString &name, qreal pointSize);
// The symbol as an image with the device pixel ratio applied; a null image for an unknown name.
QImage image(const QString &name, qreal pointSize, const QColor &color, qreal devicePixelRatio = 1.0);

} // namespace Symbols

} // namespace orvel
