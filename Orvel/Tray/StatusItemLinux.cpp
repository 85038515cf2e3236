#include "StatusItem.h"

#include "DBusStatusItem.h"
#include "TrayStatusItem.h"

#include <QSystemTrayIcon>

namespace orvel {

// Panels that collect status notifier items show Orvel's own, with the title beside the icon;
// older system trays get Qt's icon. With neither yet (a login where Orvel starts before the
// panel), Orvel's own item waits on the bus for a panel to come.
std::unique_ptr<StatusItem> StatusItem::create(QObject *parent)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (DBusStatusItem::watcherPresent(bus))
        return std::make_unique<DBusStatusItem>(bus, parent);
    if (bus.isConnected() && !QSystemTrayIcon::isSystemTrayAvailable())
        return std::make_unique<DBusStatusItem>(bus, parent);
    return std::make_unique<TrayStatusItem>(parent);
}

} // namespace orvel
