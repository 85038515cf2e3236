#pragma once

#include "Colors.h"
#include "StatusText.h"

#include <QIcon>
#include <QImage>
#include <QString>

#include <cstdint>
#include <optional>

namespace orvel {

class AppModel;

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

// The time left in at most three characters: the minutes under an hour ("49"), else the whole
// hours with "s" for saat ("2s").
QString remainingText(int64_t minutes);
// The model's face now; the time left only when the model wants it for this panel, and never in
// the entry minute, whose green disc says more.
Face face(const AppModel &model, bool panelShowsLabel);

QImage image(const Face &face, Appearance appearance, int pixels);
QImage image(State state, Appearance appearance, int pixels);
// The picture at the sizes trays ask for.
QIcon icon(const Face &face, Appearance appearance);

} // namespace TrayPicture

} // namespace orvel
