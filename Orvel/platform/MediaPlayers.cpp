#include "MediaPlayers.h"

#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
#include "unix/MprisPlayers.h"
#endif

namespace orvel {

MediaPlayers *MediaPlayers::createForPlatform(QObject *parent)
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    return new MprisPlayers(QDBusConnection::sessionBus(), parent);
#else
    return new MediaPlayers(parent);
#endif
}

} // namespace orvel
