#include "SystemEvents.h"

#if defined(Q_OS_LINUX)
#include "linux/LinuxSystemEvents.h"
#endif

namespace orvel {

SystemEvents *SystemEvents::createForPlatform(QObject *parent)
{
#if defined(Q_OS_LINUX)
    return new LinuxSystemEvents(parent);
#else
    // No source yet: the model still rolls over by its own timer, only later after a change.
    return new SystemEvents(parent);
#endif
}

} // namespace orvel
