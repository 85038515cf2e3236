#pragma once

#include <QColor>

#include <optional>

namespace orvel {

enum class Appearance { light, dark };

// The application's colours for light and dark appearance.
namespace Colors {

QColor orvel(Appearance appearance);   // accent
QColor orvelPill();                    // fill of the entry pill
QColor kerahat(Appearance appearance); // kerahat orange of rows, banner and marks
QColor systemOrange(Appearance appearance); // the kerahat dot: the platform's orange
QColor systemOrange();                 // ... for the current appearance
QColor label(Appearance appearance);   // primary text

// The desktop's current appearance (window colour lightness), unless forced for a render.
Appearance current();
void forceAppearance(std::optional<Appearance> appearance);

} // namespace Colors

} // namespace orvel
