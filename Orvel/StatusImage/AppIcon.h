#pragma once

#include <QString>

namespace orvel {

// Orvel's own icon where other programs can find it: by name once installed, else as a file that
// Orvel writes into its runtime folder from the copy inside the program.
namespace AppIcon {

// $XDG_RUNTIME_DIR/orvel/icons: a folder of Orvel's icons for this session.
QString runtimeFolder();
// The icon's name in the icon theme (io.github.orvel.Orvel) when the theme has it, else the path
// of the icon written into the runtime folder; empty when neither is possible.
QString nameOrPath();
// The written file as a file:// address; empty when it could not be written.
QString fileUrl();

} // namespace AppIcon

} // namespace orvel
