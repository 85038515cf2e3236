#pragma once

#include <QString>

#include <optional>

namespace orvel {

// Starting Orvel when the user logs in: an XDG autostart entry on Linux.
namespace Autostart {

// Turns start at login on or off. Returns a Turkish error text when that failed.
std::optional<QString> set(bool enabled);
bool isEnabled();

// $XDG_CONFIG_HOME (or ~/.config)/autostart/io.github.orvel.Orvel.desktop.
QString autostartPath();
// The entry earlier versions wrote (autostart/orvel.desktop); it counts as on until replaced.
QString formerAutostartPath();
// Replaces an entry of an earlier version with the current one.
void migrate();
// The entry's text for an executable, with the path quoted as desktop entries require.
QString desktopEntry(const QString &executable);

} // namespace Autostart

} // namespace orvel
