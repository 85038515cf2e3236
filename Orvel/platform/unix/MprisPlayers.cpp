#include "MprisPlayers.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

namespace orvel {

namespace {

constexpr auto playerPrefix = "org.mpris.MediaPlayer2.";
constexpr auto playerPath = "/org/mpris/MediaPlayer2";
constexpr auto playerInterface = "org.mpris.MediaPlayer2.Player";
// A player that does not answer at once is left alone rather than holding up the sound.
constexpr int answerMs = 300;

void send(const QDBusConnection &connection, const QString &name, const char *method)
{
    connection.asyncCall(QDBusMessage::createMethodCall(name, QString::fromLatin1(playerPath),
                                                        QString::fromLatin1(playerInterface), QString::fromLatin1(method)));
}

bool isPlaying(const QDBusConnection &connection, const QString &name)
{
    QDBusMessage get = QDBusMessage::createMethodCall(name, QString::fromLatin1(playerPath),
                                                      QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << QString::fromLatin1(playerInterface) << QStringLiteral("PlaybackStatus");
    const QDBusReply<QDBusVariant> reply = connection.call(get, QDBus::Block, answerMs);
    return reply.isValid() && reply.value().variant().toString() == QLatin1String("Playing");
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
        if (!name.startsWith(QLatin1String(playerPrefix)) || paused_.contains(name) || !isPlaying(connection_, name))
            continue;
        send(connection_, name, "Pause");
        paused_ << name;
    }
}

void MprisPlayers::resumePaused()
{
    for (const QString &name : std::as_const(paused_))
        send(connection_, name, "Play");
    paused_.clear();
}

} // namespace orvel
