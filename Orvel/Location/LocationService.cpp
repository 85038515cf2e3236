#include "LocationService.h"

#include "SystemLocationService.h"

namespace orvel {

std::unique_ptr<LocationService> LocationService::create(QObject *parent)
{
    return std::make_unique<SystemLocationService>(SystemLocationService::geoclue(), PlaceFinder(), parent);
}

} // namespace orvel
