#include "SystemLocationService.h"

#include "AppId.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGeoPositionInfoSource>
#include <QPromise>
#include <QtConcurrent/QtConcurrentRun>

namespace orvel {

namespace {

constexpr auto geoclueService = "org.freedesktop.GeoClue2";

// Whether the system bus runs the name or can start it; false when the bus cannot be asked.
QFuture<bool> systemBusKnows(const QString &name)
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return QtFuture::makeReadyFuture(false);
    struct Pending {
        QPromise<bool> promise;
        int unanswered = 2;
        bool known = false;
    };
    auto pending = std::make_shared<Pending>();
    pending->promise.start();
    const auto answered = [pending, name](const QDBusPendingCall &call) {
        const QDBusPendingReply<QStringList> reply = call;
        pending->known = pending->known || (!reply.isError() && reply.value().contains(name));
        if (--pending->unanswered > 0)
            return;
        pending->promise.addResult(pending->known);
        pending->promise.finish();
    };
    for (const char *method : {"ListNames", "ListActivatableNames"}) {
        const QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                                                 QStringLiteral("org.freedesktop.DBus"), QLatin1String(method));
        auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
        // A call that failed at once (the bus went away) is already over and tells nobody.
        if (watcher->isFinished()) {
            answered(*watcher);
            delete watcher;
            continue;
        }
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, [answered](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            answered(*finished);
        });
    }
    return pending->promise.future();
}

} // namespace

struct SystemLocationService::Request {
    QPromise<Location> promise;
    QPointer<QGeoPositionInfoSource> source;

    void finish(const Location &location)
    {
        promise.addResult(location);
        promise.finish();
    }
    void finish(LocationError error)
    {
        promise.setException(LocationFailure(error));
        promise.finish();
    }
};

SystemLocationService::SystemLocationService(Positioning positioning, PlaceFinder finder, QObject *parent)
    : LocationService(parent)
    , positioning_(std::move(positioning))
    , finder_(std::move(finder))
{
}

SystemLocationService::~SystemLocationService()
{
    fail(LocationError::unavailable);
}

SystemLocationService::Positioning SystemLocationService::geoclue()
{
    Positioning positioning;
    positioning.openSource = [](QObject *parent) {
        // geoclue asks the desktop's agent on behalf of the application its desktop file names.
        QGeoPositionInfoSource *source = QGeoPositionInfoSource::createSource(
            QStringLiteral("geoclue2"), {{QStringLiteral("desktopId"), QString::fromLatin1(AppId::id)}}, parent);
        if (source)
            source->setPreferredPositioningMethods(QGeoPositionInfoSource::NonSatellitePositioningMethods);
        return source;
    };
    // The plugin would report a missing service as an access error, and only after a long wait.
    positioning.serviceInstalled = [] { return systemBusKnows(QLatin1String(geoclueService)); };
    return positioning;
}

QFuture<Location> SystemLocationService::currentLocation()
{
    // Only one request waits at a time; the earlier caller learns it was given up.
    fail(LocationError::unavailable);
    auto request = std::make_shared<Request>();
    request->promise.start();
    QFuture<Location> future = request->promise.future();
    request_ = request;

    // Without the service the plugin would only give up when the request times out.
    QFuture<bool> installed = positioning_.serviceInstalled ? positioning_.serviceInstalled() : QtFuture::makeReadyFuture(true);
    installed.then(this, [this, request](bool present) {
        if (request_ != request)
            return;
        if (!present)
            fail(LocationError::unavailable);
        else
            requestPosition(request);
    });
    return future;
}

void SystemLocationService::requestPosition(const std::shared_ptr<Request> &request)
{
    QGeoPositionInfoSource *source = positioning_.openSource ? positioning_.openSource(this) : nullptr;
    if (!source) {
        fail(LocationError::unavailable);
        return;
    }
    request->source = source;
    connect(source, &QGeoPositionInfoSource::positionUpdated, this, [this, request](const QGeoPositionInfo &info) {
        if (request_ != request || !info.isValid())
            return;
        locate(info.coordinate().latitude(), info.coordinate().longitude());
    });
    // The service is there, so a refusal is the user's (or the desktop's) answer.
    connect(source, &QGeoPositionInfoSource::errorOccurred, this, [this, request](QGeoPositionInfoSource::Error error) {
        if (request_ == request)
            fail(error == QGeoPositionInfoSource::AccessError ? LocationError::denied : LocationError::unavailable);
    });
    source->requestUpdate(positionTimeoutMs);
}

void SystemLocationService::fail(LocationError error)
{
    const std::shared_ptr<Request> request = std::exchange(request_, nullptr);
    if (!request)
        return;
    if (request->source)
        request->source->deleteLater();
    request->finish(error);
}

void SystemLocationService::locate(double latitude, double longitude)
{
    const std::shared_ptr<Request> request = std::exchange(request_, nullptr);
    if (request->source)
        request->source->deleteLater();
    // Naming the position may take the web's time; the caller already holds the future.
    QtConcurrent::run([finder = finder_, latitude, longitude] { return finder.locate(latitude, longitude); })
        .then([request](const Location &location) { request->finish(location); });
}

QFuture<PlaceSearch> SystemLocationService::search(const QString &query)
{
    const std::string text = query.trimmed().toStdString();
    if (text.empty())
        return QtFuture::makeReadyFuture(PlaceSearch{});
    return QtConcurrent::run([finder = finder_, text] {
        try {
            PlaceFinder::Search found = finder.search(text);
            return PlaceSearch{std::move(found.places), found.offline, found.more};
        } catch (const PlaceFinder::Unavailable &failure) {
            throw SearchFailure(QString::fromStdString(failure.what()));
        } catch (const std::exception &) {
            throw SearchFailure();
        }
    });
}

} // namespace orvel
