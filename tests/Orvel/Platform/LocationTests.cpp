#include "LoopbackService.h"
#include "SystemLocationService.h"

#include <gtest/gtest.h>

#include <QGeoPositionInfoSource>
#include <QTest>
#include <QUrl>

using namespace orvel;
using namespace orvel::test;

namespace {

constexpr int waitMs = 10000;

// A position source that answers every request with one error.
class RefusingSource : public QGeoPositionInfoSource {
public:
    RefusingSource(Error error, QObject *parent)
        : QGeoPositionInfoSource(parent)
        , error_(error)
    {
    }
    void requestUpdate(int) override
    {
        ++requests;
        QMetaObject::invokeMethod(this, [this] { emit errorOccurred(error_); }, Qt::QueuedConnection);
    }
    // Never answers: the request stays open until the service gives it up.
    void startUpdates() override {}
    void stopUpdates() override {}
    QGeoPositionInfo lastKnownPosition(bool) const override { return {}; }
    PositioningMethods supportedPositioningMethods() const override { return AllPositioningMethods; }
    int minimumUpdateInterval() const override { return 1000; }
    Error error() const override { return error_; }

    int requests = 0;

private:
    Error error_;
};

SystemLocationService::Positioning nmeaLog()
{
    return {[](QObject *parent) {
                return QGeoPositionInfoSource::createSource(
                    QStringLiteral("nmea"), {{QStringLiteral("nmea.source"), QUrl::fromLocalFile(QStringLiteral(ORVEL_NMEA_LOG)).toString()}},
                    parent);
            },
            [] { return QtFuture::makeReadyFuture(true); }};
}

SystemLocationService::Positioning refusing(QGeoPositionInfoSource::Error error, bool serviceInstalled)
{
    return {[error](QObject *parent) { return new RefusingSource(error, parent); },
            [serviceInstalled] { return QtFuture::makeReadyFuture(serviceInstalled); }};
}

std::optional<LocationError> failure(QFuture<Location> future)
{
    if (!QTest::qWaitFor([&] { return future.isFinished(); }, waitMs))
        return std::nullopt;
    try {
        future.waitForFinished();
    } catch (const LocationFailure &failure) {
        return failure.error;
    }
    return std::nullopt;
}

struct Geocoding {
    LoopbackService server;
    Geocoding()
    {
        server.respond([](const httplib::Request &request, httplib::Response &response) {
            response.set_content(readGeocoding(request.path == "/reverse" ? "nominatim-uskudar.json" : "open-meteo-uskudar.json"),
                                 "application/json");
        });
        server.start();
    }
    PlaceFinder finder() const { return PlaceFinder(Geocoder(server.url("/v1/search"), server.url("/reverse"), std::chrono::seconds(5))); }
};

} // namespace

TEST(SystemLocationService, PositionFromAReplayedLogIsNamedByTheReverseService)
{
    Geocoding geocoding;
    SystemLocationService service(nmeaLog(), geocoding.finder());
    QFuture<Location> future = service.currentLocation();
    ASSERT_TRUE(QTest::qWaitFor([&] { return future.isFinished(); }, waitMs));
    const Location here = future.result();
    EXPECT_EQ(here.name, "İstanbul, Üsküdar");
    EXPECT_EQ(here.timeZoneID, "Europe/Istanbul");
    // The fix's own coordinate, unrounded: 41°01.590′ and 29°00.930′.
    EXPECT_DOUBLE_EQ(here.latitude, 41 + 1.590 / 60);
    EXPECT_DOUBLE_EQ(here.longitude, 29 + 0.930 / 60);
}

TEST(SystemLocationService, RefusalsAndMissingSourcesFailAsTheUserShouldHear)
{
    Geocoding geocoding;
    using Error = QGeoPositionInfoSource::Error;
    EXPECT_EQ(failure(SystemLocationService(refusing(Error::AccessError, true), geocoding.finder()).currentLocation()), LocationError::denied);
    EXPECT_EQ(failure(SystemLocationService(refusing(Error::AccessError, false), geocoding.finder()).currentLocation()),
              LocationError::unavailable);
    EXPECT_EQ(failure(SystemLocationService(refusing(Error::UpdateTimeoutError, true), geocoding.finder()).currentLocation()),
              LocationError::unavailable);
    const SystemLocationService::Positioning none{[](QObject *) { return nullptr; }, {}};
    EXPECT_EQ(failure(SystemLocationService(none, geocoding.finder()).currentLocation()), LocationError::unavailable);
    // Nothing was asked of the reverse service for a position never had.
    EXPECT_TRUE(geocoding.server.requests().empty());
}

TEST(SystemLocationService, ASecondRequestGivesUpTheFirstAndEachCallerHearsOnce)
{
    Geocoding geocoding;
    int opened = 0;
    SystemLocationService::Positioning positioning = nmeaLog();
    positioning.openSource = [&opened, open = positioning.openSource](QObject *parent) -> QGeoPositionInfoSource * {
        // The first source never answers; the second replays the log.
        if (opened++ == 0)
            return new RefusingSource(QGeoPositionInfoSource::NoError, parent);
        return open(parent);
    };
    SystemLocationService service(positioning, geocoding.finder());
    QFuture<Location> first = service.currentLocation();
    ASSERT_TRUE(QTest::qWaitFor([&] { return opened == 1; }, waitMs));
    QFuture<Location> second = service.currentLocation();
    EXPECT_EQ(failure(first), LocationError::unavailable);
    ASSERT_TRUE(QTest::qWaitFor([&] { return second.isFinished(); }, waitMs));
    EXPECT_EQ(second.result().name, "İstanbul, Üsküdar");
    EXPECT_EQ(first.resultCount(), 0);
}

TEST(SystemLocationService, SearchAnswersOnlineOfflineOrFails)
{
    Geocoding geocoding;
    SystemLocationService online(refusing(QGeoPositionInfoSource::NoError, true), geocoding.finder());
    QFuture<PlaceSearch> found = online.search(QStringLiteral("  Üsküdar "));
    ASSERT_TRUE(QTest::qWaitFor([&] { return found.isFinished(); }, waitMs));
    EXPECT_FALSE(found.result().offline);
    ASSERT_EQ(found.result().places.size(), 2u);
    EXPECT_EQ(found.result().places[0].name, "İstanbul, Üsküdar");
    EXPECT_EQ(geocoding.server.requests().at(0).get_param_value("name"), "Üsküdar");

    EXPECT_TRUE(online.search(QStringLiteral("   ")).result().places.empty());
    EXPECT_EQ(geocoding.server.requests().size(), 1u);

    const IdlePort refused(IdlePort::Connections::refused);
    SystemLocationService offline(refusing(QGeoPositionInfoSource::NoError, true),
                                  PlaceFinder(Geocoder(refused.url(), refused.url(), std::chrono::seconds(2))));
    QFuture<PlaceSearch> ankara = offline.search(QStringLiteral("Ankara"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return ankara.isFinished(); }, waitMs));
    EXPECT_TRUE(ankara.result().offline);
    EXPECT_EQ(ankara.result().places.at(0).name, "Ankara");
    QFuture<PlaceSearch> nowhere = offline.search(QStringLiteral("Qqxxzz"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return nowhere.isFinished(); }, waitMs));
    EXPECT_THROW(nowhere.waitForFinished(), SearchFailure);
}

// Where the desktop has no geoclue (CI, minimal window managers), asking for the position must
// end in "unavailable", never in a refusal the user did not give.
TEST(SystemLocationService, WithoutGeoclueThePositionIsUnavailable)
{
    QFuture<bool> installed = SystemLocationService::geoclue().serviceInstalled();
    ASSERT_TRUE(QTest::qWaitFor([&] { return installed.isFinished(); }, waitMs));
    if (installed.result())
        GTEST_SKIP() << "this machine has geoclue";
    Geocoding geocoding;
    SystemLocationService service(SystemLocationService::geoclue(), geocoding.finder());
    EXPECT_EQ(failure(service.currentLocation()), LocationError::unavailable);
}
