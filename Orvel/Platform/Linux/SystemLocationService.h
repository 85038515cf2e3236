#pragma once

#include "LocationService.h"
#include "PlaceFinder.h"

#include <QPointer>

#include <functional>
#include <memory>

class QGeoPositionInfoSource;

namespace orvel {

// The position from a Qt Positioning source (geoclue2 on Linux), named and searched through
// PlaceFinder on a worker thread.
class SystemLocationService final : public LocationService {
    Q_OBJECT

public:
    struct Positioning {
        // A new source for one request, owned by `parent`; none when the machine has none.
        std::function<QGeoPositionInfoSource *(QObject *parent)> openSource;
        // Whether the location service exists at all; asked before each request.
        std::function<QFuture<bool>()> serviceInstalled;
    };

    static constexpr int positionTimeoutMs = 30000;

    SystemLocationService(Positioning positioning, PlaceFinder finder, QObject *parent = nullptr);
    ~SystemLocationService() override;

    // The desktop's geoclue, asking for the device's position as Orvel's desktop file.
    static Positioning geoclue();

    QFuture<Location> currentLocation() override;
    QFuture<PlaceSearch> search(const QString &query) override;

private:
    struct Request;

    void requestPosition(const std::shared_ptr<Request> &request);
    void fail(LocationError error);
    void locate(double latitude, double longitude);

    Positioning positioning_;
    PlaceFinder finder_;
    std::shared_ptr<Request> request_; // the caller waiting for a position, if any
};

} // namespace orvel
