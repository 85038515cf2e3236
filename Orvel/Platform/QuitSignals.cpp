#include "QuitSignals.h"

#include "UnixQuitSignals.h"

namespace orvel {

QuitSignals *QuitSignals::createForPlatform(QObject *parent)
{
    return new UnixQuitSignals(parent);
}

} // namespace orvel
