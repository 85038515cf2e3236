#include "Platform.h"

#include "DBusStatusItem.h"
#include "DBusStatusService.h"
#include "FreedesktopNotifications.h"
#include "LinuxSystemEvents.h"
#include "MprisPlayers.h"
#include "SystemLocationService.h"
#include "TrayStatusItem.h"
#include "UnixQuitSignals.h"

#include <QSystemTrayIcon>

namespace orvel::Platform {

// Panels that collect status notifier items show Orvel's own, with the title beside the icon;
// older system trays get Qt's icon. With neither yet (a login where Orvel starts before the
// panel), Orvel's own item waits on the bus for a panel to come.
std::unique_ptr<StatusItem> statusItem(QObject *parent)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (DBusStatusItem::watcherPresent(bus))
        return std::make_unique<DBusStatusItem>(bus, parent);
    if (bus.isConnected() && !QSystemTrayIcon::isSystemTrayAvailable())
        return std::make_unique<DBusStatusItem>(bus, parent);
    return std::make_unique<TrayStatusItem>(parent);
}

std::shared_ptr<NotificationBackend> notifications()
{
    return std::make_shared<FreedesktopNotifications>(QDBusConnection::sessionBus());
}

SystemEvents *systemEvents(QObject *parent)
{
    return new LinuxSystemEvents(parent);
}

MediaPlayers *mediaPlayers(QObject *parent)
{
    return new MprisPlayers(QDBusConnection::sessionBus(), parent);
}

QuitSignals *quitSignals(QObject *parent)
{
    return new UnixQuitSignals(parent);
}

std::unique_ptr<LocationService> locationService(QObject *parent)
{
    return std::make_unique<SystemLocationService>(SystemLocationService::geoclue(), PlaceFinder(), parent);
}

StatusService *statusService(QObject *parent)
{
    return new DBusStatusService(QDBusConnection::sessionBus(), parent);
}

} // namespace orvel::Platform
