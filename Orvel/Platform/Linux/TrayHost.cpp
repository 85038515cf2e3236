#include "TrayHost.h"

#include <QDBusConnectionInterface>
#include <QFile>
#include <QStringList>

namespace orvel::TrayHost {

namespace {

constexpr auto watcherService = "org.kde.StatusNotifierWatcher";

// Watchers that belong to panels drawing the label beside the icon. The kernel keeps at most 15
// characters of a process's name.
const QStringList labelPrograms{
    QStringLiteral("gnome-shell"),
    QStringLiteral("indicator-appli"),  // indicator-application-service
    QStringLiteral("ayatana-indicat"),  // ayatana-indicator-application-service
};

// Desktops whose usual tray is one of those.
const QStringList labelDesktops{
    QStringLiteral("GNOME"),
    QStringLiteral("GNOME-Classic"),
    QStringLiteral("ubuntu"),
    QStringLiteral("Unity"),
};

} // namespace

QString watcherProgram(const QDBusConnection &connection)
{
    const QDBusConnectionInterface *bus = connection.interface();
    if (!connection.isConnected() || !bus)
        return {};
    const QDBusReply<uint> pid = bus->servicePid(QString::fromLatin1(watcherService));
    if (!pid.isValid() || pid.value() == 0)
        return {};
    QFile comm(QStringLiteral("/proc/%1/comm").arg(pid.value()));
    if (!comm.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(comm.readAll()).trimmed();
}

bool showsLabel(const QString &program, const QString &currentDesktop)
{
    if (!program.isEmpty())
        return labelPrograms.contains(program.left(15));
    const QString desktop = currentDesktop.section(u':', 0, 0);
    return labelDesktops.contains(desktop, Qt::CaseInsensitive);
}

bool showsLabel(const QDBusConnection &connection)
{
    return showsLabel(watcherProgram(connection), qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}

bool givesLocalPoints(const QString &watcherProgram)
{
    return watcherProgram.left(15) == QLatin1String("notification-ar"); // notification-area-applet
}

} // namespace orvel::TrayHost
