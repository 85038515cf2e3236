#include "MprisPlayers.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace orvel {

namespace {

constexpr auto playerPrefix = "org.mpris.MediaPlayer2.";
constexpr auto playerPath = "/org/mpris/MediaPlayer2";
constexpr auto playerInterface = "org.mpris.MediaPlayer2.Player";

void send(const QDBusConnection &connection, const QString &name, const char *method)
{
    connection.asyncCall(QDBusMessage::createMethodCall(name, QString::fromLatin1(playerPath),
                                                        QString::fromLatin1(playerInterface), QString::fromLatin1(method)));
}

} // namespace

MprisPlayers::MprisPlayers(QDBusConnection connection, QObject *parent)
    : MediaPlayers(parent)
    , connection_(std::move(connection))
{
}

void MprisPlayers::pausePlaying()
{
    const QDBusConnectionInterface *bus = connection_.isConnected() ? connection_.interface() : nullptr;
    if (!bus)
        return;
    const QStringList names = bus->registeredServiceNames().value();
    for (const QString &name : names) {
        if (!name.startsWith(QLatin1String(playerPrefix)) || paused_.contains(name))
            continue;
        // Asked without waiting: a slow player must not hold up the sound or the UI.
        QDBusMessage get = QDBusMessage::createMethodCall(name, QString::fromLatin1(playerPath),
                                                          QStringLiteral("org.freedesktop.DBus.Properties"),
                                                          QStringLiteral("Get"));
        get << QString::fromLatin1(playerInterface) << QStringLiteral("PlaybackStatus");
        const quint64 round = round_;
        auto *watcher = new QDBusPendingCallWatcher(connection_.asyncCall(get), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, name, round](QDBusPendingCallWatcher *call) {
            call->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *call;
            // An answer after the sound ended is too late to pause anything.
            if (round != round_ || !reply.isValid() || reply.value().variant().toString() != QLatin1String("Playing"))
                return;
            send(connection_, name, "Pause");
            paused_ << name;
        });
    }
}

void MprisPlayers::resumePaused()
{
    ++round_;
    for (const QString &name : std::as_const(paused_))
        send(connection_, name, "Play");
    paused_.clear();
}

} // namespace orvel
