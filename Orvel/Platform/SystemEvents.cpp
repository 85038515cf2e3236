#include "SystemEvents.h"

#include "LinuxSystemEvents.h"

namespace orvel {

SystemEvents *SystemEvents::createForPlatform(QObject *parent)
{
    return new LinuxSystemEvents(parent);
}

} // namespace orvel
