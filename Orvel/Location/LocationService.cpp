#include "LocationService.h"

#include <QFuture>

namespace orvel {

namespace {

// Stands in until the desktop's services are wired in.
class NoLocationService final : public LocationService {
public:
    using LocationService::LocationService;

    QFuture<Location> currentLocation() override
    {
        return QtFuture::makeExceptionalFuture<Location>(LocationFailure(LocationError::unavailable));
    }

    QFuture<PlaceSearch> search(const QString &) override
    {
        return QtFuture::makeExceptionalFuture<PlaceSearch>(SearchFailure());
    }
};

} // namespace

std::unique_ptr<LocationService> LocationService::create(QObject *parent)
{
    return std::make_unique<NoLocationService>(parent);
}

} // namespace orvel
