#include "QuitSignals.h"

#include "linux/UnixQuitSignals.h"

namespace orvel {

QuitSignals *QuitSignals::createForPlatform(QObject *parent)
{
    return new UnixQuitSignals(parent);
}

} // namespace orvel
