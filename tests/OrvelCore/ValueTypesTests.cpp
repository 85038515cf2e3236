#include "AladhanClient.h"
#include "Calendars.h"
#include "CalculationMethod.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "HijriDate.h"
#include "Location.h"
#include "MonthKey.h"
#include "Prayer.h"
#include "QuietHours.h"
#include "TimesSource.h"

#include <gtest/gtest.h>
#include <clocale>
#include <cstdlib>
#include <string>
#include <nlohmann/json.hpp>

using namespace orvel;
using nlohmann::json;

namespace {

template<typename T>
T roundTrip(const T &value)
{
    return json::parse(json(value).dump()).template get<T>();
}

const DayTimes sampleDay{{2025, 3, 1},
                         {Instant{762494640.5}, Instant{762499020}, Instant{762519180}, Instant{762530700},
                          Instant{762539700}, Instant{762545100}},
                         std::nullopt};

} // namespace

TEST(Prayer, tablesAndOrder)
{
    ASSERT_EQ(Prayer::allCases.size(), 6u);
    for (size_t i = 0; i < Prayer::allCases.size(); ++i) {
        const Prayer prayer = Prayer::allCases[i];
        EXPECT_EQ(prayer.index(), static_cast<int>(i));
        EXPECT_EQ(Prayer::fromRawValue(prayer.rawValue()), prayer);
        EXPECT_EQ(prayer.displayName(false), prayer.name());
        EXPECT_EQ(prayer.countdownPhrase(false), prayer.countdownPhrase());
        if (i + 1 < Prayer::allCases.size()) {
            EXPECT_EQ(prayer.nextInDay(), Prayer(Prayer::allCases[i + 1]));
        }
    }
    EXPECT_EQ(Prayer(Prayer::imsak).nextInDay(), Prayer(Prayer::gunes));
    EXPECT_FALSE(Prayer(Prayer::yatsi).nextInDay().has_value());
    EXPECT_FALSE(Prayer::fromRawValue("Imsak").has_value());
    EXPECT_EQ(Prayer(Prayer::ikindi).rawValue(), "ikindi");
    EXPECT_EQ(Prayer(Prayer::yatsi).name(), "Yatsı");
    EXPECT_EQ(Prayer(Prayer::aksam).detail(), "Güneş batışı");
    EXPECT_FALSE(Prayer(Prayer::ogle).detail().has_value());
    EXPECT_FALSE(Prayer(Prayer::gunes).isEzan());
    EXPECT_TRUE(Prayer(Prayer::imsak).isEzan());
    EXPECT_EQ(Prayer(Prayer::ikindi).symbol(), "sun.haze");

    EXPECT_EQ(Prayer(Prayer::imsak).countdownPhrase(), "İmsak vaktine");
    EXPECT_EQ(Prayer(Prayer::gunes).countdownPhrase(), "Güneş doğuşuna");
    EXPECT_EQ(Prayer(Prayer::ogle).countdownPhrase(), "Öğle ezanına");
    EXPECT_EQ(Prayer(Prayer::yatsi).countdownPhrase(), "Yatsı ezanına");
}

TEST(Prayer, ramadanWording)
{
    EXPECT_EQ(Prayer(Prayer::imsak).displayName(true), "Sahur");
    EXPECT_EQ(Prayer(Prayer::imsak).countdownPhrase(true), "Sahurun bitmesine");
    EXPECT_EQ(Prayer(Prayer::aksam).displayName(true), "İftar");
    EXPECT_EQ(Prayer(Prayer::aksam).countdownPhrase(true), "İftara");
    EXPECT_EQ(Prayer(Prayer::ikindi).displayName(true), "İkindi");
    EXPECT_EQ(Prayer(Prayer::ikindi).countdownPhrase(true), "İkindi ezanına");
    EXPECT_EQ(Prayer(Prayer::gunes).countdownPhrase(true), "Güneş doğuşuna");
    EXPECT_EQ(Prayer(Prayer::imsak).ramadanTag(), "sahur sonu");
    EXPECT_EQ(Prayer(Prayer::aksam).ramadanTag(), "iftar");
    EXPECT_FALSE(Prayer(Prayer::ogle).ramadanTag().has_value());
}

TEST(DayKey, arithmeticAndOrder)
{
    EXPECT_EQ((DayKey{2024, 12, 31}.adding(1)), (DayKey{2025, 1, 1}));
    EXPECT_EQ((DayKey{2024, 3, 1}.adding(-1)), (DayKey{2024, 2, 29}));
    EXPECT_EQ((DayKey{2023, 3, 1}.adding(-1)), (DayKey{2023, 2, 28}));
    EXPECT_EQ((DayKey{1900, 2, 28}.adding(1)), (DayKey{1900, 3, 1}));
    EXPECT_EQ((DayKey{2000, 2, 28}.adding(1)), (DayKey{2000, 2, 29}));
    EXPECT_EQ((DayKey{2025, 1, 1}.adding(-1)), (DayKey{2024, 12, 31}));
    EXPECT_EQ((DayKey{2024, 1, 1}.adding(366)), (DayKey{2025, 1, 1}));
    EXPECT_EQ((DayKey{2025, 1, 31}.adding(-400)), (DayKey{2023, 12, 28}));
    // The night the clocks change in Istanbul's neighbours is an ordinary day here.
    EXPECT_EQ((DayKey{2025, 3, 29}.adding(1)), (DayKey{2025, 3, 30}));
    EXPECT_EQ((DayKey{2025, 3, 7}.adding(0)), (DayKey{2025, 3, 7}));

    EXPECT_LT((DayKey{2024, 12, 31}), (DayKey{2025, 1, 1}));
    EXPECT_LT((DayKey{2025, 1, 31}), (DayKey{2025, 2, 1}));
    EXPECT_GT((DayKey{2025, 2, 2}), (DayKey{2025, 2, 1}));
    EXPECT_EQ((DayKey{2025, 3, 7}.monthKey()), (MonthKey{2025, 3}));
    EXPECT_EQ((DayKey{2025, 3, 7}.description()), "2025-03-07");
    EXPECT_EQ((DayKey{987, 12, 1}.description()), "0987-12-01");
    EXPECT_EQ(std::hash<DayKey>()(DayKey{2025, 3, 7}), std::hash<DayKey>()(DayKey{2025, 3, 7}));
}

TEST(MonthKey, lengthsAndDays)
{
    EXPECT_EQ((MonthKey{2024, 2}.dayCount()), 29);
    EXPECT_EQ((MonthKey{2023, 2}.dayCount()), 28);
    EXPECT_EQ((MonthKey{2100, 2}.dayCount()), 28);
    EXPECT_EQ((MonthKey{2025, 11}.dayCount()), 30);
    EXPECT_EQ((MonthKey{2025, 12}.dayCount()), 31);
    const std::vector<DayKey> february = MonthKey{2023, 2}.days();
    ASSERT_EQ(february.size(), 28u);
    EXPECT_EQ(february.front(), (DayKey{2023, 2, 1}));
    EXPECT_EQ(february.back(), (DayKey{2023, 2, 28}));
    for (size_t i = 1; i < february.size(); ++i)
        EXPECT_EQ(february[i], february[i - 1].adding(1));
    EXPECT_EQ((MonthKey{2025, 3}.description()), "2025-03");
}

TEST(HijriDate, namesAndText)
{
    EXPECT_EQ((HijriDate{1, 9, 1446}.formatted()), "1 Ramazan 1446");
    EXPECT_EQ((HijriDate{29, 8, 1446}.formatted()), "29 Şaban 1446");
    EXPECT_EQ((HijriDate{1, 1, 1447}.monthName()), "Muharrem");
    EXPECT_EQ((HijriDate{1, 12, 1447}.monthName()), "Zilhicce");
    EXPECT_EQ((HijriDate{1, 0, 1447}.monthName()), "Muharrem");
    EXPECT_EQ((HijriDate{1, -3, 1447}.monthName()), "Muharrem");
    EXPECT_EQ((HijriDate{1, 13, 1447}.monthName()), "Zilhicce");
}

TEST(Location, keysAndZones)
{
    const Location istanbul = Location::istanbul();
    EXPECT_EQ(istanbul.name, "İstanbul, Fatih");
    EXPECT_EQ(istanbul.cacheKey(), "41.008_28.978");
    EXPECT_EQ((Location{"Santiago", -33.4489, -70.6693, "America/Santiago"}.cacheKey()), "-33.449_-70.669");
    EXPECT_EQ(istanbul.timeZone().id(), "Europe/Istanbul");
    EXPECT_EQ((Location{"", 0, 0, "Asia/Riyadh"}.timeZone().id()), "Asia/Riyadh");
    // Tests pin the machine's zone to Istanbul; a name that is no zone gets it.
    EXPECT_EQ((Location{"", 0, 0, "Nowhere/Atlantis"}.timeZone().id()), "Europe/Istanbul");
    EXPECT_EQ((Location{"", 0, 0, ""}.timeZone().id()), "Europe/Istanbul");
}

// A GUI takes the numeric locale from the environment; a Turkish one writes "41,008".
TEST(Location, keysAndQueriesKeepTheDecimalPointInACommaLocale)
{
    setenv("LOCPATH", ORVEL_TEST_LOCPATH, 1);
    const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
    if (!std::setlocale(LC_NUMERIC, "tr_TR.UTF-8"))
        GTEST_SKIP() << "no Turkish locale under " << ORVEL_TEST_LOCPATH;
    char probe[16];
    std::snprintf(probe, sizeof probe, "%.1f", 1.5);
    const std::string cacheKey = Location::istanbul().cacheKey();
    const std::string url = AladhanClient("https://example.org/v1")
                                .requestURL({2026, 11}, {"", -33.4489, 151.2093, "Australia/Sydney"}, CalculationMethod::mwl);
    std::setlocale(LC_NUMERIC, previous.c_str());

    ASSERT_STREQ(probe, "1,5");
    EXPECT_EQ(cacheKey, "41.008_28.978");
    EXPECT_EQ(url, "https://example.org/v1/calendar/2026/11?latitude=-33.4489&longitude=151.2093&method=3"
                   "&timezonestring=Australia/Sydney");
}

TEST(QuietHours, containsOverAndWithinADay)
{
    const TimeZone istanbul = Location::istanbul().timeZone();
    const Instant midnight = Calendars::startOfDay(2025, 6, 21, istanbul);
    const auto at = [&](int hour, int minute, int second = 0) { return midnight + hour * 3600 + minute * 60 + second; };

    const QuietHours night{true, 1380, 420};
    EXPECT_TRUE(night.contains(at(23, 0), istanbul));
    EXPECT_TRUE(night.contains(at(0, 0), istanbul));
    EXPECT_TRUE(night.contains(at(6, 59, 59), istanbul));
    EXPECT_FALSE(night.contains(at(7, 0), istanbul));
    EXPECT_FALSE(night.contains(at(22, 59, 59), istanbul));
    EXPECT_FALSE(night.contains(at(12, 0), istanbul));
    // The wall clock of the zone counts, not UTC: 23:30 in Istanbul is 20:30 UTC.
    EXPECT_FALSE(night.contains(at(23, 30), TimeZone::utc()));

    const QuietHours early{true, 60, 120};
    EXPECT_TRUE(early.contains(at(1, 0), istanbul));
    EXPECT_TRUE(early.contains(at(1, 59), istanbul));
    EXPECT_FALSE(early.contains(at(2, 0), istanbul));
    EXPECT_FALSE(early.contains(at(0, 59), istanbul));

    EXPECT_FALSE((QuietHours{true, 600, 600}.contains(at(10, 0), istanbul)));
    EXPECT_FALSE((QuietHours{false, 1380, 420}.contains(at(23, 30), istanbul)));
    EXPECT_FALSE((QuietHours{false, 0, 1439}.contains(at(12, 0), istanbul)));
}

TEST(CalculationMethod, namesAndParameters)
{
    EXPECT_EQ(CalculationMethod::fromRawValue("ummAlQura"), CalculationMethod(CalculationMethod::ummAlQura));
    EXPECT_FALSE(CalculationMethod::fromRawValue("UmmAlQura").has_value());
    for (const CalculationMethod::Value value : CalculationMethod::allCases)
        EXPECT_EQ(CalculationMethod::fromRawValue(CalculationMethod(value).rawValue()), CalculationMethod(value));
    EXPECT_EQ(CalculationMethod(CalculationMethod::diyanet).aladhanID(), 13);
    EXPECT_EQ(CalculationMethod(CalculationMethod::ummAlQura).name(), "Ümmü'l-Kura, Mekke");

    const CalculationParameters diyanet = CalculationMethod(CalculationMethod::diyanet).parameters();
    EXPECT_EQ(diyanet.adjustment(Prayer::imsak), 0);
    EXPECT_EQ(diyanet.adjustment(Prayer::gunes), -7);
    EXPECT_EQ(diyanet.adjustment(Prayer::aksam), 7);
    EXPECT_EQ(diyanet.adjustment(Prayer::yatsi), 0);
    const CalculationParameters ummAlQura = CalculationMethod(CalculationMethod::ummAlQura).parameters();
    EXPECT_FALSE(ummAlQura.ishaAngle.has_value());
    EXPECT_EQ(ummAlQura.ishaInterval, 90.0);
    EXPECT_EQ(CalculationMethod(CalculationMethod::egypt).parameters().fajrAngle, 19.5);
}

TEST(Json, roundTripsOfEveryType)
{
    EXPECT_EQ(roundTrip(DayKey{2025, 3, 7}), (DayKey{2025, 3, 7}));
    EXPECT_EQ(roundTrip(MonthKey{2025, 12}), (MonthKey{2025, 12}));
    EXPECT_EQ(roundTrip(HijriDate{9, 9, 1446}), (HijriDate{9, 9, 1446}));
    EXPECT_EQ(roundTrip(QuietHours{true, 1380, 420}), (QuietHours{true, 1380, 420}));
    const Location santiago{"Santiago, Şili", -33.4489, -70.6693, "America/Santiago"};
    EXPECT_EQ(roundTrip(santiago), santiago);
    EXPECT_EQ(roundTrip(Location::istanbul()), Location::istanbul());

    for (const Prayer::Value value : Prayer::allCases) {
        Prayer decoded = Prayer::imsak;
        json::parse(json(Prayer(value)).dump()).get_to(decoded);
        EXPECT_EQ(decoded, Prayer(value));
    }
    for (const CalculationMethod::Value value : CalculationMethod::allCases) {
        CalculationMethod decoded = CalculationMethod::diyanet;
        json::parse(json(CalculationMethod(value)).dump()).get_to(decoded);
        EXPECT_EQ(decoded, CalculationMethod(value));
    }

    // Cache files and settings depend on these exact keys and forms.
    EXPECT_EQ(json(DayKey{2025, 3, 7}), json::parse(R"({"year":2025,"month":3,"day":7})"));
    EXPECT_EQ(json(Location::istanbul()),
              json::parse(R"({"name":"İstanbul, Fatih","latitude":41.0082,"longitude":28.9784,"timeZoneID":"Europe/Istanbul"})"));
    EXPECT_EQ(json(QuietHours{true, 60, 120}), json::parse(R"({"enabled":true,"start":60,"end":120})"));
    EXPECT_EQ(json(Prayer(Prayer::yatsi)), "yatsi");
    EXPECT_EQ(json(CalculationMethod(CalculationMethod::ummAlQura)), "ummAlQura");
    EXPECT_EQ(rawValue(TimesSource::online), "online");
    EXPECT_EQ(rawValue(TimesSource::offline), "offline");
}

TEST(Json, dayTimes)
{
    const json plain = sampleDay;
    EXPECT_FALSE(plain.contains("hijri"));
    EXPECT_EQ(plain.at("times").at(0).get<double>(), 762494640.5);
    EXPECT_EQ(roundTrip(sampleDay), sampleDay);

    DayTimes withHijri = sampleDay;
    withHijri.hijri = HijriDate{1, 9, 1446};
    EXPECT_EQ(json(withHijri).at("hijri"), json::parse(R"({"day":1,"month":9,"year":1446})"));
    EXPECT_EQ(roundTrip(withHijri), withHijri);

    json nullHijri = withHijri;
    nullHijri["hijri"] = nullptr;
    nullHijri["source"] = "aladhan"; // unknown keys are ignored
    nullHijri["day"]["weekday"] = 6;
    EXPECT_EQ(nullHijri.get<DayTimes>(), sampleDay);

    json fiveTimes = sampleDay;
    fiveTimes["times"].erase(5);
    EXPECT_THROW(fiveTimes.get<DayTimes>(), json::exception);
    json noTimes = sampleDay;
    noTimes.erase("times");
    EXPECT_THROW(noTimes.get<DayTimes>(), json::exception);
    json textTime = sampleDay;
    textTime["times"][2] = "12:00";
    EXPECT_THROW(textTime.get<DayTimes>(), json::exception);
}

TEST(Json, badValuesFail)
{
    Prayer prayer = Prayer::imsak;
    EXPECT_THROW(json("Yatsi").get_to(prayer), json::exception);
    EXPECT_THROW(json(5).get_to(prayer), json::exception);
    CalculationMethod method = CalculationMethod::diyanet;
    EXPECT_THROW(json("UmmAlQura").get_to(method), json::exception);
    EXPECT_THROW(json::parse(R"({"year":2025,"month":3})").get<DayKey>(), json::exception);
    EXPECT_THROW(json::parse(R"({"name":"x","latitude":1,"longitude":"2","timeZoneID":"UTC"})").get<Location>(), json::exception);
    EXPECT_THROW(json::parse(R"({"enabled":true,"start":60})").get<QuietHours>(), json::exception);
}
