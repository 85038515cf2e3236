#pragma once

#include <QDBusConnection>
#include <QString>

namespace orvel {

// Which panels show the title that a status notifier item offers beside its icon (the Ayatana
// label). GNOME Shell's AppIndicator extension and the Ayatana indicator panels (Unity, MATE's
// and XFCE's indicator applets) show it; KDE Plasma's tray, XFCE's own tray, waybar and the
// XEmbed bridges do not. The program that owns the watcher tells best, since one desktop may
// run either kind; only when it cannot be told does the desktop's name decide.
namespace TrayHost {

// The program owning the StatusNotifierWatcher on the bus ("gnome-shell", "kded5", …), as the
// kernel names its process; empty when there is no watcher or the bus does not say.
QString watcherProgram(const QDBusConnection &connection);
// `currentDesktop` is XDG_CURRENT_DESKTOP: names separated by colons, the most specific first.
bool showsLabel(const QString &watcherProgram, const QString &currentDesktop);
// The same for the panel on this bus and this session's desktop.
bool showsLabel(const QDBusConnection &connection);
// Whether the panel passes Activate a point inside its own window rather than on the screen:
// MATE's notification area, an applet process of its own, does.
bool givesLocalPoints(const QString &watcherProgram);

} // namespace TrayHost

} // namespace orvel
