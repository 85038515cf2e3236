#include "MediaPlayers.h"

#include "MprisPlayers.h"

namespace orvel {

MediaPlayers *MediaPlayers::createForPlatform(QObject *parent)
{
    return new MprisPlayers(QDBusConnection::sessionBus(), parent);
}

} // namespace orvel
