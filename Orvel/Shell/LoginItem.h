#pragma once

#include <QString>

#include <optional>

namespace orvel {

// Starting Orvel when the user logs in: an XDG autostart entry on Linux.
namespace LoginItem {

// Turns start at login on or off. Returns a Turkish error text when that failed.
std::optional<QString> set(bool enabled);
bool isEnabled();

// $XDG_CONFIG_HOME (or ~/.config)/autostart/orvel.desktop.
QString autostartPath();
// The entry's text for an executable, with the path quoted as desktop entries require.
QString desktopEntry(const QString &executable);

} // namespace LoginItem

} // namespace orvel
