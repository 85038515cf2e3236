#include "AdhanSound.h"
#include "AladhanClient.h"
#include "Calendars.h"
#include "CalculationMethod.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "HighLatitudeRule.h"
#include "HijriDate.h"
#include "ImsakiyeMode.h"
#include "Kerahat.h"
#include "Location.h"
#include "MonthKey.h"
#include "Prayer.h"
#include "QuietHours.h"
#include "TimesSource.h"
#include "TrayStyle.h"

#include <gtest/gtest.h>
#include <clocale>
#include <cstdlib>
#include <locale>
#include <set>
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

struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

} // namespace

TEST(Prayer, turkishWordingInAndOutOfRamadan)
{
    const struct { Prayer prayer; const char *name, *phrase, *ramadanName, *ramadanPhrase; } cases[] = {
        {Prayer::imsak, "İmsak", "İmsak vaktine", "Sahur", "Sahurun bitmesine"},
        {Prayer::gunes, "Güneş", "Güneş doğuşuna", "Güneş", "Güneş doğuşuna"},
        {Prayer::aksam, "Akşam", "Akşam ezanına", "İftar", "İftara"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(c.prayer.displayName(false), c.name);
        EXPECT_EQ(c.prayer.countdownPhrase(), c.phrase);
        EXPECT_EQ(c.prayer.displayName(true), c.ramadanName);
        EXPECT_EQ(c.prayer.countdownPhrase(true), c.ramadanPhrase);
    }
    EXPECT_EQ(Prayer(Prayer::aksam).ramadanTag(), "iftar");
    EXPECT_FALSE(Prayer(Prayer::yatsi).nextInDay().has_value());
}

template <typename T>
class EveryEnumeration : public testing::Test {};
using Enumerations = testing::Types<Prayer, CalculationMethod, KerahatKind, HighLatitudeRule, ImsakiyeMode, AdhanSound,
                                    TrayStyle, TimesSource>;
TYPED_TEST_SUITE(EveryEnumeration, Enumerations);

// Stored settings, cache files and the command line all name choices by id: two choices under
// one id, or an id that does not read back, would silently turn one choice into another.
TYPED_TEST(EveryEnumeration, eachChoiceHasItsOwnIdAndReadsBack)
{
    std::set<std::string_view> seen;
    for (const typename TypeParam::Value value : TypeParam::all) {
        const TypeParam choice(value);
        EXPECT_FALSE(choice.id().empty());
        EXPECT_TRUE(seen.insert(choice.id()).second) << choice.id();
        EXPECT_EQ(TypeParam::fromId(choice.id()), std::optional<TypeParam>(choice));
        TypeParam decoded = TypeParam::all[(choice.index() + 1) % TypeParam::all.size()];
        json(choice).get_to(decoded);
        EXPECT_EQ(decoded, choice);
    }
    EXPECT_EQ(TypeParam::fromId(""), std::nullopt);
    EXPECT_EQ(TypeParam::fromId("x"), std::nullopt);
}

TEST(DayKey, arithmeticOverMonthYearAndLeapBoundaries)
{
    // Weekdays on both sides of the count's zero (1970-01-01, a Thursday) and across a leap day.
    EXPECT_EQ((DayKey{1970, 1, 1}).weekday(), 4);
    EXPECT_EQ((DayKey{1969, 12, 28}).weekday(), 0);
    EXPECT_TRUE((DayKey{2026, 12, 11}).isFriday());
    EXPECT_EQ((DayKey{2024, 3, 1}).weekday(), 5);
    EXPECT_EQ((DayKey{2024, 2, 29}).weekday(), 4);
    const struct { DayKey from; int64_t days; DayKey to; } cases[] = {
        {{2024, 12, 31}, 1, {2025, 1, 1}},  {{2025, 1, 1}, -1, {2024, 12, 31}}, {{2024, 3, 1}, -1, {2024, 2, 29}},
        {{2023, 3, 1}, -1, {2023, 2, 28}},  {{1900, 2, 28}, 1, {1900, 3, 1}},   {{2000, 2, 28}, 1, {2000, 2, 29}},
        {{2024, 1, 1}, 366, {2025, 1, 1}},  {{2025, 1, 31}, -400, {2023, 12, 28}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.from.adding(c.days), c.to) << c.from.description() << " + " << c.days;
    EXPECT_EQ((DayKey{987, 12, 1}.description()), "0987-12-01");

    const std::vector<DayKey> february = MonthKey{2023, 2}.days();
    ASSERT_EQ(february.size(), 28u);
    EXPECT_EQ(february.back(), (DayKey{2023, 2, 28}));
}

// A GUI takes the numeric locale from the environment; a Turkish one writes "41,008".
TEST(Location, keysAndQueriesKeepTheDecimalPointInACommaLocale)
{
    setenv("LOCPATH", ORVEL_TEST_LOCPATH, 1);
    const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
    if (!std::setlocale(LC_NUMERIC, "tr_TR.UTF-8"))
        GTEST_SKIP() << "no Turkish locale under " << ORVEL_TEST_LOCPATH;
    const std::locale previousGlobal = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    char probe[16];
    std::snprintf(probe, sizeof probe, "%.1f", 1.5);
    const std::string cacheKey = Location::istanbul().cacheKey();
    const std::string url = AladhanClient("https://example.org/v1")
                                .requestURL({2026, 11}, {"", -33.4489, 151.2093, "Australia/Sydney"}, CalculationMethod::mwl);
    std::locale::global(previousGlobal);
    std::setlocale(LC_NUMERIC, previous.c_str());

    ASSERT_STREQ(probe, "1,5");
    EXPECT_EQ(cacheKey, "41.008_28.978");
    EXPECT_EQ(url, "https://example.org/v1/calendar/2026/11?latitude=-33.4489&longitude=151.2093&method=3"
                   "&timezonestring=Australia/Sydney");
}

TEST(QuietHours, overMidnightAndWithinADay)
{
    const TimeZone istanbul = Location::istanbul().timeZone();
    const Instant midnight = Calendars::startOfDay(2025, 6, 21, istanbul);
    const auto at = [&](int hour, int minute, int second = 0) { return midnight + hour * 3600 + minute * 60 + second; };

    const QuietHours night{true, 1380, 420}, early{true, 60, 120};
    for (const Instant instant : {at(23, 0), at(0, 0), at(6, 59, 59), at(7, 0), at(22, 59, 59), at(12, 0), at(0, 59), at(1, 59), at(2, 0)}) {
        const double minutes = (instant - midnight) / 60;
        EXPECT_EQ(night.contains(instant, istanbul), minutes >= 23 * 60 || minutes < 7 * 60) << minutes;
        EXPECT_EQ(early.contains(instant, istanbul), minutes >= 60 && minutes < 120) << minutes;
    }
    // The wall clock of the zone counts, not UTC: 23:30 in Istanbul is 20:30 UTC.
    EXPECT_FALSE(night.contains(at(23, 30), TimeZone::utc()));
    EXPECT_FALSE((QuietHours{true, 600, 600}.contains(at(10, 0), istanbul)));
    EXPECT_FALSE((QuietHours{false, 0, 1439}.contains(at(12, 0), istanbul)));
}

TEST(Json, roundTripsAndTheStoredForms)
{
    const Location santiago{"Santiago, Şili", -33.4489, -70.6693, "America/Santiago"};
    EXPECT_EQ(roundTrip(santiago), santiago);
    // Each value is decoded over the one before, so a decoder that does nothing fails.
    Prayer prayer = Prayer::yatsi;
    for (const Prayer::Value value : Prayer::all)
        EXPECT_EQ(json::parse(json(Prayer(value)).dump()).get_to(prayer), Prayer(value));
    CalculationMethod method = CalculationMethod::all.back();
    for (const CalculationMethod::Value value : CalculationMethod::all)
        EXPECT_EQ(json::parse(json(CalculationMethod(value)).dump()).get_to(method), CalculationMethod(value));

    // Cache files and settings depend on these exact keys and forms.
    EXPECT_EQ(json(DayKey{2025, 3, 7}), json::parse(R"({"year":2025,"month":3,"day":7})"));
    EXPECT_EQ(json(Location::istanbul()),
              json::parse(R"({"name":"İstanbul, Fatih","latitude":41.0082,"longitude":28.9784,"timeZoneID":"Europe/Istanbul",)"
                          R"("diyanetPoint":{"latitude":41.0148,"longitude":28.9687},"countryCode":"TR"})"));
    // A country code that is not two letters reads as unknown; case is not kept.
    Location read;
    from_json(json::parse(R"({"name":"x","latitude":1,"longitude":2,"timeZoneID":"UTC","countryCode":"de"})"), read);
    EXPECT_EQ(read.countryCode, "DE");
    from_json(json::parse(R"({"name":"x","latitude":1,"longitude":2,"timeZoneID":"UTC","countryCode":"DEU"})"), read);
    EXPECT_EQ(read.countryCode, "");
    EXPECT_EQ(json(QuietHours{true, 60, 120}), json::parse(R"({"enabled":true,"start":60,"end":120})"));
    EXPECT_EQ(json(Prayer(Prayer::yatsi)), "yatsi");
    EXPECT_EQ(json(CalculationMethod(CalculationMethod::ummAlQura)), "ummAlQura");
    EXPECT_EQ(TimesSource(TimesSource::offline).id(), "offline");

    EXPECT_THROW(json("Yatsi").get_to(prayer), json::exception);
    EXPECT_THROW(json("UmmAlQura").get_to(method), json::exception);
    EXPECT_THROW(json::parse(R"({"year":2025,"month":3})").get<DayKey>(), json::exception);
    EXPECT_THROW(json::parse(R"({"name":"x","latitude":1,"longitude":"2","timeZoneID":"UTC"})").get<Location>(), json::exception);
    EXPECT_THROW(json::parse(R"({"enabled":true,"start":60})").get<QuietHours>(), json::exception);
}

TEST(Json, dayTimes)
{
    const DayTimes plain{{2025, 3, 1}, {Instant{762494640.5}, Instant{762499020}, Instant{762519180}, Instant{762530700}, Instant{762539700}, Instant{762545100}}, {}};
    EXPECT_FALSE(json(plain).contains("hijri"));
    EXPECT_EQ(json(plain).at("times").at(0).get<double>(), 762494640.5);
    EXPECT_EQ(roundTrip(plain), plain);

    DayTimes withHijri = plain;
    withHijri.hijri = HijriDate{1, 9, 1446};
    EXPECT_EQ(json(withHijri).at("hijri"), json::parse(R"({"day":1,"month":9,"year":1446})"));
    EXPECT_EQ(roundTrip(withHijri), withHijri);

    json nullHijri = withHijri;
    nullHijri["hijri"] = nullptr;
    nullHijri["source"] = "aladhan"; // unknown keys are ignored
    EXPECT_EQ(nullHijri.get<DayTimes>(), plain);
}
