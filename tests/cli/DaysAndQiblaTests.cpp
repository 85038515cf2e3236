#include "CliRun.h"
#include "Qibla.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <regex>

using nlohmann::json;
using namespace orvel;

// A year's days as Diyanet lists them, and the method and year they were asked for.
TEST(CliDays, aYearAsJson)
{
    const CliRun run = runCli({"days", "--year", "2026", "--json"});
    ASSERT_EQ(run.status, 0) << run.err;
    const json document = json::parse(run.out);
    EXPECT_EQ(document["year"], 2026);
    EXPECT_EQ(document["method"], "diyanet");
    ASSERT_EQ(document["days"].size(), 18u);
    EXPECT_EQ(document["days"][1]["date"], "2026-02-02");
    EXPECT_EQ(document["days"][1]["name"], "Berat Kandili");
    EXPECT_EQ(document["days"][1]["kind"], "night");
    EXPECT_EQ(document["days"][1]["hijri"], json::parse(R"({"day": 14, "month": 8, "year": 1447})"));

    const CliRun other = runCli({"days", "--year", "2027", "--method", "mwl"});
    EXPECT_EQ(other.status, 0);
    EXPECT_NE(other.out.find("2027 yılının dini günleri · MWL"), std::string::npos) << other.out;
    EXPECT_EQ(runCli({"days", "--year", "99999"}).status, 2);
}

// The place options reach the bearing; the day's kıble saati is a clock time, or null on a day the
// sun never stands in the qibla's direction.
TEST(CliQibla, bearingDistanceAndTheDaysHour)
{
    const CliRun run = runCli({"qibla", "--lat", "52.52", "--lon", "13.405", "--tz", "Europe/Berlin", "--name", "Berlin",
                               "--date", "2026-06-21", "--json"});
    ASSERT_EQ(run.status, 0) << run.err;
    const json document = json::parse(run.out);
    EXPECT_NEAR(document["bearing"].get<double>(), Qibla::bearing(52.52, 13.405), 0.01);
    EXPECT_NEAR(document["distanceKm"].get<double>(), Qibla::distanceKm(52.52, 13.405), 0.1);
    EXPECT_EQ(document["compass"], "güneydoğu");
    EXPECT_EQ(document["date"], "2026-06-21");
    ASSERT_TRUE(document["qiblaTime"].is_string()) << run.out;
    EXPECT_TRUE(std::regex_match(document["qiblaTime"].get<std::string>(), std::regex("(0[89]|1[0-2]):[0-5][0-9]")))
        << document["qiblaTime"];

    const CliRun text = runCli({"qibla", "--lat", "41.0082", "--lon", "28.9784", "--tz", "Europe/Istanbul", "--name",
                                "İstanbul", "--date", "2026-03-10"});
    EXPECT_NE(text.out.find("Yön: 152° (güneydoğu)"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("Kâbe'ye uzaklık: 2.40"), std::string::npos) << text.out;
}
