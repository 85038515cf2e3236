#include "CliRun.h"
#include "LoopbackService.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace orvel::test;

namespace {

// Every test starts with no stored settings and leaves none behind.
class CliPlaces : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::remove_all(configHome());
        geocoder.respond([](const httplib::Request &request, httplib::Response &response) {
            const std::string name = request.get_param_value("name");
            response.set_content(readGeocoding(name == "Berlin" ? "open-meteo-berlin.json"
                                               : name == "Üsküdar" ? "open-meteo-uskudar.json"
                                                                    : "open-meteo-empty.json"),
                                 "application/json");
        });
        geocoder.start();
    }
    void TearDown() override { std::filesystem::remove_all(configHome()); }

    CliRun places(std::vector<std::string> args)
    {
        args.insert(args.begin(), "places");
        args.insert(args.end(), {"--geocoder", geocoder.url("/v1/search")});
        return runCli(args);
    }

    LoopbackService geocoder;
};

std::string header(const CliRun &run)
{
    return run.out.substr(0, run.out.find('\n'));
}

} // namespace

TEST_F(CliPlaces, ListsTheServicesPlacesNumberedOncePerName)
{
    const CliRun run = places({"Üsküdar"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "1  İstanbul, Üsküdar  41.0225  29.0237  Europe/Istanbul\n"
                       "2  Sakarya, Üsküdar   40.8861  30.4122  Europe/Istanbul\n");
    EXPECT_EQ(geocoder.requests().at(0).get_param_value("name"), "Üsküdar");

    const auto document = nlohmann::json::parse(places({"Berlin", "--json"}).out);
    EXPECT_EQ(document["offline"], false);
    ASSERT_EQ(document["places"].size(), 2u);
    EXPECT_EQ(document["places"][1]["name"], "New Hampshire, Berlin");
    EXPECT_EQ(document["places"][1]["timeZoneID"], "America/New_York");

    const CliRun none = places({"Xyzzy"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "Sonuç bulunamadı.\n");
    EXPECT_EQ(places({"  "}).status, 2);
}

TEST_F(CliPlaces, AnUnreachableServiceLeavesTheGazetteer)
{
    const IdlePort refused(IdlePort::Connections::refused);
    const CliRun ankara = runCli({"places", "Ankara", "--geocoder", refused.url()});
    ASSERT_EQ(ankara.status, 0) << ankara.err;
    EXPECT_EQ(ankara.out.substr(0, ankara.out.find("  ")), "1");
    EXPECT_NE(header(ankara).find("Ankara"), std::string::npos);
    EXPECT_NE(header(ankara).find("Europe/Istanbul"), std::string::npos);
    EXPECT_NE(ankara.err.find("cihazdaki yer listesinden"), std::string::npos);

    const CliRun unknown = runCli({"places", "Qqxxzz", "--geocoder", refused.url()});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.err, "Arama yapılamadı. İnternet bağlantınızı kontrol edin.\n");
}

TEST_F(CliPlaces, TheChosenPlaceIsWhatTimesAndStatusShowUntilOptionsSayOtherwise)
{
    EXPECT_EQ(header(runCli({"times", "--offline"})), "İstanbul, Fatih · Diyanet İşleri Başkanlığı");

    const CliRun chosen = places({"Berlin", "--choose", "2"});
    ASSERT_EQ(chosen.status, 0) << chosen.err;
    EXPECT_EQ(chosen.out, "Yer seçildi: New Hampshire, Berlin (44.4687, -71.1851, America/New_York)\n");
    EXPECT_EQ(places({"Berlin", "--choose", "3"}).status, 2);

    EXPECT_EQ(header(runCli({"times", "--offline"})), "New Hampshire, Berlin · Diyanet İşleri Başkanlığı");
    const auto status = nlohmann::json::parse(runCli({"status", "--offline", "--format", "json"}).out);
    EXPECT_EQ(status["location"]["timeZoneID"], "America/New_York");
    EXPECT_EQ(header(runCli({"times", "--offline", "--lat", "52.52", "--lon", "13.405", "--name", "Berlin"})),
              "Berlin · Diyanet İşleri Başkanlığı");
    EXPECT_EQ(header(runCli({"times", "--offline", "--method", "mwl"})), "New Hampshire, Berlin · Müslüman Dünya Birliği");

    // A store another program spoiled gives the application's defaults, as the application does.
    std::ofstream(settingsFile()) << "[General]\nlocation=\"@ByteArray({\\\"name\\\":17})\"\nmethod=nonsense\n";
    EXPECT_EQ(header(runCli({"times", "--offline"})), "İstanbul, Fatih · Diyanet İşleri Başkanlığı");
}
