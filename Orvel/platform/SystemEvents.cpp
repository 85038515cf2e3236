#include "SystemEvents.h"

#include "linux/LinuxSystemEvents.h"

namespace orvel {

SystemEvents *SystemEvents::createForPlatform(QObject *parent)
{
    return new LinuxSystemEvents(parent);
}

} // namespace orvel
