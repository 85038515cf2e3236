#pragma once

#include "Colors.h"
#include "StatusText.h"

#include <QIcon>
#include <QImage>

namespace orvel {

// The square picture for system trays, which pad every icon to a square: the crescent, with the
// kerahat dot or the green entry disc drawn in. The title text is left to the tooltip.
namespace TrayPicture {

using State = StatusLine::State;

QImage image(State state, Appearance appearance, int pixels);
// The picture at the sizes trays ask for.
QIcon icon(State state, Appearance appearance);

} // namespace TrayPicture

} // namespace orvel
