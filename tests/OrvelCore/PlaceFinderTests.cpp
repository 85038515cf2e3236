#include "Gazetteer.h"
#include "HttpGet.h"
#include "LoopbackService.h"
#include "PlaceFinder.h"

#include <gtest/gtest.h>

using namespace orvel;
using namespace orvel::test;

namespace {

Placemark mark(std::optional<std::string> province, std::optional<std::string> district, std::optional<std::string> town,
               std::optional<std::string> quarter, std::optional<std::string> name = std::nullopt)
{
    Placemark place;
    place.administrativeArea = std::move(province);
    place.subAdministrativeArea = std::move(district);
    place.locality = std::move(town);
    place.subLocality = std::move(quarter);
    place.name = std::move(name);
    return place;
}

// Both geocoding services on one loopback server, told apart by their paths.
struct Services {
    LoopbackService server;
    std::string searchBody = readGeocoding("open-meteo-uskudar.json");
    std::string reverseBody = readGeocoding("nominatim-uskudar.json");
    int status = 200;

    Services()
    {
        server.respond([this](const httplib::Request &request, httplib::Response &response) {
            response.status = status;
            response.set_content(request.path == "/v1/search" ? searchBody : reverseBody, "application/json");
        });
        server.start();
    }

    Geocoder geocoder() const { return Geocoder(server.url("/v1/search"), server.url("/reverse"), std::chrono::seconds(5)); }
};

// A geocoder whose services refuse every connection.
Geocoder unreachable(const IdlePort &port)
{
    return Geocoder(port.url(), port.url(), std::chrono::seconds(2));
}

} // namespace

TEST(Placemark, NamesTheProvinceThenTheFirstDifferentDetail)
{
    EXPECT_EQ(mark("İstanbul", std::nullopt, "İstanbul", "Fatih").displayName(), "İstanbul, Fatih");
    EXPECT_EQ(mark("İstanbul", "Üsküdar", "İstanbul", "Kuzguncuk").displayName(), "İstanbul, Üsküdar");
    EXPECT_EQ(mark("Berlin", std::nullopt, "Berlin", std::nullopt).displayName(), "Berlin");
    EXPECT_EQ(mark(std::nullopt, std::nullopt, "Köln", std::nullopt).displayName(), "Köln");
    EXPECT_EQ(mark(std::nullopt, std::nullopt, std::nullopt, "Moda").displayName(), "Moda");
    EXPECT_EQ(mark(std::nullopt, std::nullopt, std::nullopt, std::nullopt, "Galata Kulesi").displayName(), "Galata Kulesi");
    EXPECT_EQ(mark(std::nullopt, std::nullopt, std::nullopt, std::nullopt).displayName(), std::nullopt);
}

TEST(PlaceFinder, LocationsSkipUnplacedAndRepeatedNamesAndFillGaps)
{
    Placemark fatih = mark("İstanbul", std::nullopt, "İstanbul", "Fatih");
    fatih.latitude = 41.01;
    fatih.longitude = 28.95;
    fatih.timeZoneID = "Europe/Istanbul";
    Placemark again = fatih;
    again.latitude = 41.02;
    Placemark nameless = mark(std::nullopt, std::nullopt, std::nullopt, std::nullopt);
    nameless.latitude = 10;
    nameless.longitude = 20;
    Placemark nowhere = mark("Ankara", std::nullopt, std::nullopt, std::nullopt);

    const std::vector<Location> found = PlaceFinder::locations({fatih, again, nowhere, nameless}, "Sultanahmet", "Asia/Tokyo");
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0], (Location{"İstanbul, Fatih", 41.01, 28.95, "Europe/Istanbul"}));
    EXPECT_EQ(found[1], (Location{"Sultanahmet", 10, 20, "Asia/Tokyo"}));
}

TEST(Geocoder, SearchSendsTheQueryEncodedAndReadsTheDocumentedBody)
{
    Services services;
    const std::vector<Placemark> places = services.geocoder().search("Üsküdar");
    ASSERT_EQ(services.server.requests().size(), 1u);
    const httplib::Request request = services.server.requests().front();
    EXPECT_EQ(request.get_param_value("name"), "Üsküdar");
    EXPECT_EQ(request.get_param_value("language"), "tr");
    EXPECT_EQ(request.get_param_value("format"), "json");
    EXPECT_NE(services.geocoder().searchRequestURL("Kadıköy Moda").find("name=Kad%C4%B1k%C3%B6y%20Moda&"), std::string::npos);

    ASSERT_EQ(places.size(), 3u);
    EXPECT_EQ(places[0].displayName(), "İstanbul, Üsküdar");
    EXPECT_EQ(places[0].timeZoneID, "Europe/Istanbul");
    EXPECT_DOUBLE_EQ(*places[0].latitude, 41.02252);
    EXPECT_DOUBLE_EQ(*places[0].longitude, 29.02369);
    EXPECT_EQ(places[2].displayName(), "Sakarya, Üsküdar");

    services.searchBody = readGeocoding("open-meteo-empty.json");
    EXPECT_TRUE(services.geocoder().search("Xyzzy").empty());
}

TEST(Geocoder, FailuresReachTheCaller)
{
    Services services;
    services.status = 500;
    EXPECT_THROW(services.geocoder().search("Ankara"), Http::StatusError);
    services.status = 200;
    services.searchBody = "<html>bakımdayız</html>";
    EXPECT_THROW(services.geocoder().search("Ankara"), std::exception);
    services.searchBody = R"({"results": {"name": "Ankara"}})";
    EXPECT_THROW(services.geocoder().search("Ankara"), std::exception);

    const IdlePort refused(IdlePort::Connections::refused);
    EXPECT_THROW(unreachable(refused).search("Ankara"), Http::TransportError);
}

TEST(Geocoder, ReverseReadsTheAddressAndKeepsToOneRequestASecond)
{
    Services services;
    const Geocoder geocoder = services.geocoder();
    const std::vector<Placemark> first = geocoder.reverse(41.0265, 29.0155);
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0].displayName(), "İstanbul, Üsküdar");
    EXPECT_DOUBLE_EQ(*first[0].latitude, 41.0264975);

    const httplib::Request request = services.server.requests().front();
    EXPECT_EQ(request.path, "/reverse");
    EXPECT_EQ(request.get_param_value("format"), "jsonv2");
    EXPECT_EQ(request.get_param_value("accept-language"), "tr");
    EXPECT_EQ(request.get_param_value("lat"), "41.02650");
    EXPECT_NE(request.get_header_value("User-Agent").find("Orvel/"), std::string::npos);

    services.reverseBody = readGeocoding("nominatim-error.json");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_TRUE(geocoder.reverse(0, -30).empty());
    // The service's usage policy: no more than one request a second from one application.
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(900));
}

TEST(PlaceFinder, SearchAnswersOncePerNameOnlineAndFromTheGazetteerOffline)
{
    Services services;
    services.searchBody = readGeocoding("open-meteo-berlin.json");
    const PlaceFinder::Search berlin = PlaceFinder(services.geocoder()).search("Berlin");
    EXPECT_FALSE(berlin.offline);
    ASSERT_EQ(berlin.places.size(), 2u);
    EXPECT_EQ(berlin.places[0], (Location{"Berlin", 52.52437, 13.41053, "Europe/Berlin", std::nullopt, "DE"}));
    EXPECT_EQ(berlin.places[1].name, "New Hampshire, Berlin");
    EXPECT_EQ(berlin.places[1].timeZoneID, "America/New_York");

    const IdlePort refused(IdlePort::Connections::refused);
    const PlaceFinder offline(unreachable(refused));
    const PlaceFinder::Search ankara = offline.search("Ankara");
    EXPECT_TRUE(ankara.offline);
    ASSERT_FALSE(ankara.places.empty());
    EXPECT_EQ(ankara.places[0].name, "Ankara");
    EXPECT_EQ(ankara.places[0].timeZoneID, "Europe/Istanbul");
    EXPECT_NEAR(ankara.places[0].latitude, 39.92, 0.1);
    // Each place knows its country offline too, for the rule Diyanet applies there.
    EXPECT_EQ(ankara.places[0].countryCode, "TR");
    EXPECT_EQ(offline.search("Köln").places.at(0).countryCode, "DE");
    // Names come in Turkish, whatever the machine's language.
    EXPECT_EQ(offline.search("Köln").places.at(0).name, "Kuzey Ren-Vestfalya, Köln");

    // Nothing anywhere after a failure is the connection's fault; nothing after an answer is not.
    EXPECT_THROW(offline.search("Qqxxzz"), PlaceFinder::Unavailable);
    services.searchBody = R"({"generationtime_ms": 0.2})";
    const PlaceFinder answering(services.geocoder());
    EXPECT_EQ(answering.search("Qqxxzz"), PlaceFinder::Search{});
    // A district the geocoder does not know comes from the device's list, without a warning.
    const PlaceFinder::Search kadikoy = answering.search("kadikoy");
    EXPECT_FALSE(kadikoy.offline);
    ASSERT_FALSE(kadikoy.places.empty());
    EXPECT_EQ(kadikoy.places[0].name, "İstanbul, Kadıköy");
}

TEST(PlaceFinder, LocateNamesThePositionAndTakesTheZoneFromNearby)
{
    Services services;
    const Location uskudar = PlaceFinder(services.geocoder()).locate(41.0265, 29.0155);
    // Diyanet computes Üsküdar at İstanbul's point.
    EXPECT_EQ(uskudar, (Location{"İstanbul, Üsküdar", 41.0265, 29.0155, "Europe/Istanbul", GeoPoint{41.0148, 28.9687}, "TR"}));

    // The reverse service answers for Berlin's position but gives no zone.
    services.reverseBody = R"({"lat": "52.5", "lon": "13.4", "name": "Mitte", "address": {"state": "Berlin", "city": "Berlin", "suburb": "Mitte"}})";
    const Location berlin = PlaceFinder(services.geocoder()).locate(52.52, 13.405);
    EXPECT_EQ(berlin.name, "Berlin, Mitte");
    EXPECT_EQ(berlin.timeZoneID, "Europe/Berlin");
    EXPECT_DOUBLE_EQ(berlin.latitude, 52.52);
    EXPECT_EQ(berlin.countryCode, "DE");

    const IdlePort refused(IdlePort::Connections::refused);
    const PlaceFinder offline(unreachable(refused));
    const Location nearAnkara = offline.locate(39.99, 32.84);
    EXPECT_EQ(nearAnkara.name, "Ankara, Keçiören");
    EXPECT_EQ(nearAnkara.timeZoneID, "Europe/Istanbul");
    // Mid-Atlantic: nothing within reach names it; the machine's zone (pinned by the tests) holds.
    EXPECT_EQ(offline.locate(30.0, -40.0), (Location{"Konumum", 30.0, -40.0, "Europe/Istanbul"}));
}

TEST(Gazetteer, NearestKeepsWithinTheDistance)
{
    EXPECT_NEAR(Gazetteer::kilometresBetween(41.0082, 28.9784, 39.9334, 32.8597), 350, 5);
    const auto near = Gazetteer::nearest(48.8566, 2.3522, 20);
    ASSERT_TRUE(near);
    EXPECT_EQ(near->place.timeZoneID, "Europe/Paris");
    EXPECT_LE(near->kilometres, 20);
    EXPECT_FALSE(Gazetteer::nearest(-60.0, -150.0, 300));
}
