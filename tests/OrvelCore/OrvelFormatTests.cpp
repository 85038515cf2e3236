#include "Calendars.h"
#include "OrvelFormat.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

using namespace orvel;

namespace {

const TimeZone istanbul = TimeZone::named("Europe/Istanbul");

Instant local(int hour, int minute, const TimeZone &zone = istanbul)
{
    return Calendars::startOfDay(2025, 6, 21, zone) + hour * 3600 + minute * 60;
}

} // namespace

TEST(OrvelFormat, durations)
{
    EXPECT_EQ(OrvelFormat::hoursMinutes(75), (std::pair<int64_t, int64_t>{1, 15}));
    EXPECT_EQ(OrvelFormat::hoursMinutes(-75), (std::pair<int64_t, int64_t>{-1, -15}));
    EXPECT_EQ(OrvelFormat::compact(0), "0:00");
    EXPECT_EQ(OrvelFormat::compact(59), "0:59");
    EXPECT_EQ(OrvelFormat::compact(60), "1:00");
    EXPECT_EQ(OrvelFormat::compact(600), "10:00");
    EXPECT_EQ(OrvelFormat::compact(-75), "-1:15");
    EXPECT_EQ(OrvelFormat::spoken(0), "0 dakika");
    EXPECT_EQ(OrvelFormat::spoken(59), "59 dakika");
    EXPECT_EQ(OrvelFormat::spoken(60), "1 saat");
    EXPECT_EQ(OrvelFormat::spoken(61), "1 saat 1 dakika");
    EXPECT_EQ(OrvelFormat::spoken(-59), "-59 dakika");
}

TEST(OrvelFormat, dativeEndingFollowsTheLastSpokenNumber)
{
    const struct {
        int hour;
        int minute;
        const char *text;
    } cases[] = {
        {0, 0, "00:00'a"},   {10, 0, "10:00'a"},  {7, 20, "07:20'ye"}, {12, 30, "12:30'a"},
        {12, 40, "12:40'a"}, {12, 50, "12:50'ye"}, {11, 0, "11:00'e"},  {12, 0, "12:00'ye"},
        {12, 1, "12:01'e"},  {12, 2, "12:02'ye"},  {13, 0, "13:00'e"},  {14, 0, "14:00'e"},
        {5, 0, "05:00'e"},   {12, 45, "12:45'e"},  {6, 0, "06:00'ya"},  {16, 0, "16:00'ya"},
        {12, 16, "12:16'ya"}, {17, 0, "17:00'ye"}, {18, 0, "18:00'e"},  {19, 0, "19:00'a"},
        {20, 0, "20:00'ye"}, {23, 59, "23:59'a"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(OrvelFormat::timeWithDative(local(c.hour, c.minute), istanbul), c.text);
    EXPECT_EQ(OrvelFormat::dativeSuffix(60), "e");
    EXPECT_EQ(OrvelFormat::dativeSuffix(90), "e");
    EXPECT_EQ(OrvelFormat::dativeSuffix(100), "e");
}

TEST(OrvelFormat, textsFollowThePlacesZone)
{
    // 09:00 UTC: noon in İstanbul, half past two in Kolkata, five in the morning in New York.
    const Instant instant = local(9, 0, TimeZone::utc());
    EXPECT_EQ(OrvelFormat::timeWithDative(instant, istanbul), "12:00'ye");
    EXPECT_EQ(OrvelFormat::timeWithDative(instant, TimeZone::named("Asia/Kolkata")), "14:30'a");
    EXPECT_EQ(OrvelFormat::timeWithDative(instant, TimeZone::named("America/New_York")), "05:00'e");
    EXPECT_EQ(OrvelFormat::time(instant, TimeZone::utc()), "09:00");

    const Instant november = Calendars::startOfDay(2026, 11, 16, istanbul) + 23 * 3600 + 30 * 60;
    EXPECT_EQ(OrvelFormat::longDate(november, istanbul), "16 Kasım 2026 Pazartesi");
    EXPECT_EQ(OrvelFormat::longDate(november, TimeZone::named("Asia/Tokyo")), "17 Kasım 2026 Salı");
    EXPECT_EQ(OrvelFormat::pattern(november, istanbul, "LLLL yyyy"), "Kasım 2026");
    EXPECT_EQ(OrvelFormat::pattern(november, istanbul, "d MMM EEE"), "16 Kas Pzt");
}

TEST(OrvelFormat, turkishLowerCase)
{
    EXPECT_EQ(OrvelFormat::lowercased("İkindi"), "ikindi");
    EXPECT_EQ(OrvelFormat::lowercased("İmsak"), "imsak");
    EXPECT_EQ(OrvelFormat::lowercased("YATSI"), "yatsı");
    EXPECT_EQ(OrvelFormat::lowercased("ÖĞLE"), "öğle");
}
