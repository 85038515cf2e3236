#include "DBusStatusService.h"

#include <QDBusMessage>
#include <QVariantMap>

#include <string_view>

namespace orvel {

// moc needs the interface's name as a literal.
static_assert(std::string_view(StatusBus::interfaceName) == "io.github.orvel.Orvel.Status");

DBusStatusService::DBusStatusService(QDBusConnection connection, QObject *parent)
    : StatusService(parent)
    , connection_(std::move(connection))
{
    if (!connection_.isConnected())
        return;
    const auto exported = QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportAllProperties;
    if (!connection_.registerObject(QString::fromLatin1(objectPath), this, exported))
        return;
    // The object is served first, so that a follower that sees the name can read it at once.
    registered_ = connection_.registerService(QString::fromLatin1(serviceName));
    if (!registered_)
        connection_.unregisterObject(QString::fromLatin1(objectPath));
}

DBusStatusService::~DBusStatusService()
{
    if (!registered_)
        return;
    connection_.unregisterService(QString::fromLatin1(serviceName));
    connection_.unregisterObject(QString::fromLatin1(objectPath));
}

void DBusStatusService::publish(const PublishedStatus &status)
{
    QVariantMap changed;
    const auto compare = [&changed](const char *name, const QString &before, const QString &after) {
        if (before != after)
            changed.insert(QString::fromLatin1(name), after);
    };
    compare("Title", status_.title, status.title);
    compare("Label", status_.label, status.label);
    compare("State", status_.state, status.state);
    compare("NextName", status_.nextName, status.nextName);
    compare("NextMoment", status_.nextMoment, status.nextMoment);
    if (status_.playing != status.playing)
        changed.insert(QStringLiteral("Playing"), status.playing);
    status_ = status;
    if (changed.isEmpty() || !registered_)
        return;
    QDBusMessage signal = QDBusMessage::createSignal(QString::fromLatin1(objectPath),
                                                     QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    signal << QString::fromLatin1(interfaceName) << changed << QStringList();
    connection_.send(signal);
}

void DBusStatusService::ShowPanel()
{
    emit showPanelRequested();
}

void DBusStatusService::OpenImsakiye()
{
    emit openImsakiyeRequested();
}

void DBusStatusService::OpenSettings()
{
    emit openSettingsRequested();
}

void DBusStatusService::StopSound()
{
    emit stopSoundRequested();
}

} // namespace orvel
