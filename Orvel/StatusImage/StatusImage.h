#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>

#include <optional>

namespace orvel {

// The status item's picture: crescent, optional text, optional kerahat dot, and the green pill
// of the entry announcement. Sizes are in points; the image carries its device pixel ratio.
namespace StatusImage {

enum class Style { normal, adhan };

struct Image {
    QImage image;            // devicePixelRatio set; 22 points high
    bool isTemplate = false; // monochrome: the panel may recolour it for its own background

    QSize pointSize() const; // size in points (image size / device pixel ratio)
    // A copy with every drawn pixel in one colour (for template images on a given panel).
    Image tinted(const QColor &color) const;
};

// The text's font: the desktop's UI font at 13 points, medium weight, digits of equal width.
QFont font();

Image make(const QString &symbol, const std::optional<QString> &text, Style style, bool dot,
           qreal devicePixelRatio = 1.0);

} // namespace StatusImage

} // namespace orvel
