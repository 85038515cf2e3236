#include "QuitSignals.h"

#if defined(Q_OS_UNIX)
#include "unix/UnixQuitSignals.h"
#endif

namespace orvel {

QuitSignals *QuitSignals::createForPlatform(QObject *parent)
{
#if defined(Q_OS_UNIX)
    return new UnixQuitSignals(parent);
#else
    return new QuitSignals(parent);
#endif
}

} // namespace orvel
