#include "CliRun.h"
#include "LoopbackService.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <algorithm>

#include <fstream>
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
    // The device's list was searched: it does not know the name, and the online search was out of reach.
    EXPECT_EQ(unknown.err, "Cihazdaki yer listesinde bulunamadı; çevrimiçi aramaya ulaşılamadı.\n");
}

// A province's name lists its centre, then its best-known districts: the city's heart too, whose
// districts GeoNames counts within the city; a cut list says so; names keep their own letters.
TEST_F(CliPlaces, ProvinceCentreAndItsHeartFirstAndOwnSpellings)
{
    const IdlePort refused(IdlePort::Connections::refused);
    const CliRun istanbul = runCli({"places", "İstanbul", "--geocoder", refused.url()});
    ASSERT_EQ(istanbul.status, 0) << istanbul.err;
    EXPECT_TRUE(header(istanbul).starts_with("1   İstanbul ")) << header(istanbul);
    for (const char *district : {"Fatih", "Kadıköy", "Beşiktaş", "Beyoğlu"})
        EXPECT_NE(istanbul.out.find(std::string("İstanbul, ") + district + " "), std::string::npos) << district;
    EXPECT_NE(istanbul.err.find("Yalnız ilk 20 sonuç"), std::string::npos) << istanbul.err;
    // The list shows twenty: a choice past them is refused with the real bound.
    const CliRun past = runCli({"places", "İstanbul", "--choose", "21", "--geocoder", refused.url()});
    EXPECT_EQ(past.status, 2);
    EXPECT_NE(past.err.find("20"), std::string::npos) << past.err;
    EXPECT_EQ(past.err.find("100"), std::string::npos) << past.err;

    const CliRun tromso = runCli({"places", "Tromso", "--geocoder", refused.url()});
    ASSERT_EQ(tromso.status, 0) << tromso.err;
    EXPECT_NE(header(tromso).find("Tromsø"), std::string::npos) << tromso.out;
    // A short list says nothing of more.
    EXPECT_EQ(tromso.err.find("Yalnız ilk"), std::string::npos);
}

// A settings file that does not read is kept, and every run says in one line why İstanbul shows.
TEST_F(CliPlaces, ABrokenSettingsFileIsKeptAndNamed)
{
    std::filesystem::create_directories(settingsFile().parent_path());
    for (const std::string &broken : {std::string("\x89PNG\r\n\x1a\n\xff\xfe", 10),
                                     std::string("[General]\nlocation=@ByteArray({\"name\":\"Berl)\n")}) {
        std::ofstream(settingsFile(), std::ios::binary) << broken;
        const CliRun times = runCli({"times", "--offline"});
        EXPECT_EQ(times.status, 0) << times.err;
        EXPECT_EQ(header(times), "İstanbul, Fatih · Diyanet İşleri Başkanlığı");
        EXPECT_TRUE(times.err.starts_with("orvel-cli: uyarı: ")) << times.err;
        EXPECT_NE(times.err.find(settingsFile().string()), std::string::npos) << times.err;
        EXPECT_EQ(std::count(times.err.begin(), times.err.end(), '\n'), 1) << times.err;
        EXPECT_EQ(::readFile(settingsFile()), broken) << "the user's file is left as it was";
    }
    std::filesystem::remove(settingsFile());
    EXPECT_EQ(runCli({"times", "--offline"}).err, "");
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
