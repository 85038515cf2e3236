#pragma once

#include "Colors.h"
#include "StatusText.h"

#include <QIcon>
#include <QImage>
#include <QString>

#include <cstdint>
#include <optional>

namespace orvel {

// The square picture for system trays, which pad every icon to a square: the crescent, with the
// kerahat dot or the green entry disc drawn in, and where the panel shows no title beside the
// icon, the time left under the crescent.
namespace TrayPicture {

using State = StatusLine::State;

// What the square shows.
struct Face {
    State state = State::normal;
    QString remaining; // "49", "2s"; empty for none

    bool operator==(const Face &) const = default;
};

// The time left in few characters that no one misreads: the minutes up to 99 ("49", "99"), else
// the whole hours with "sa" for saat ("1sa" from 1:40 on, "12sa"); never "s", which reads as
// saniye.
QString remainingText(int64_t minutes);
// The face of the content; the time left only when it is wanted for this panel, and never in the
// entry minute, whose green disc says more.
Face face(const StatusItemContent &content, bool panelShowsLabel);

// The crescent and digits in `ink`, the panel's text colour; the kerahat orange and the entry
// disc keep their own colours, the orange in its shade for a panel as dark as `ink` is light.
QImage image(const Face &face, const QColor &ink, int pixels);
// The same in the application's own text colour for the appearance.
QImage image(const Face &face, Appearance appearance, int pixels);
QImage image(State state, Appearance appearance, int pixels);
QColor ink(Appearance appearance);
// The picture at the sizes trays ask for.
QIcon icon(const Face &face, Appearance appearance);

// The state's crescent as a symbolic SVG for panels that recolour icons themselves: drawn in
// currentColor with Plasma's ColorScheme-Text class; the kerahat dot and the entry disc carry
// GTK's "warning" and "success" classes and Plasma's neutral and positive ones.
QByteArray symbolicSvg(State state);
// "io.github.orvel.Orvel-symbolic", "…-kerahat-symbolic", "…-entry-symbolic".
QString symbolicName(State state);

} // namespace TrayPicture

} // namespace orvel
