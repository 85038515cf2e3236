#include "Calendars.h"
#include "OrvelFormat.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

using namespace orvel;

namespace {

const TimeZone istanbul = TimeZone::named("Europe/Istanbul");

} // namespace

TEST(OrvelFormat, durationsAndTheDativeEndingOfTheLastSpokenNumber)
{
    EXPECT_EQ(OrvelFormat::compact(59), "0:59");
    EXPECT_EQ(OrvelFormat::compact(-75), "-1:15");
    EXPECT_EQ(OrvelFormat::spoken(60), "1 saat");
    EXPECT_EQ(OrvelFormat::spoken(61), "1 saat 1 dakika");
    const Instant midnight = Calendars::startOfDay(2025, 6, 21, istanbul);
    const struct { int hour, minute; const char *text; } cases[] = {
        {0, 0, "00:00'a"},   {10, 0, "10:00'a"},   {7, 20, "07:20'ye"},  {12, 30, "12:30'a"},  {12, 40, "12:40'a"},  {12, 50, "12:50'ye"},
        {11, 0, "11:00'e"},  {12, 0, "12:00'ye"},  {12, 1, "12:01'e"},   {12, 2, "12:02'ye"},  {13, 0, "13:00'e"},   {14, 0, "14:00'e"},
        {5, 0, "05:00'e"},   {12, 45, "12:45'e"},  {6, 0, "06:00'ya"},   {16, 0, "16:00'ya"},  {12, 16, "12:16'ya"}, {17, 0, "17:00'ye"},
        {18, 0, "18:00'e"},  {19, 0, "19:00'a"},   {20, 0, "20:00'ye"},  {23, 59, "23:59'a"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(OrvelFormat::timeWithDative(midnight + c.hour * 3600 + c.minute * 60, istanbul), c.text);
    for (const int number : {60, 90, 100}) // altmış, doksan, yüz
        EXPECT_EQ(OrvelFormat::dativeSuffix(number), "e") << number;

    // The locative hardens after a voiceless consonant and follows the last vowel.
    const struct { int hour, minute; const char *text; } at[] = {
        {12, 53, "12:53'te"}, {12, 30, "12:30'da"}, {12, 40, "12:40'ta"}, {12, 50, "12:50'de"}, {12, 0, "12:00'de"},
        {6, 0, "06:00'da"},   {9, 0, "09:00'da"},   {14, 0, "14:00'te"},  {15, 0, "15:00'te"},  {16, 50, "16:50'de"},
    };
    for (const auto &c : at)
        EXPECT_EQ(OrvelFormat::timeWithLocative(midnight + c.hour * 3600 + c.minute * 60, istanbul), c.text);
}

TEST(OrvelFormat, textsFollowThePlacesZone)
{
    // 09:00 UTC: noon in İstanbul, half past two in Kolkata.
    const Instant instant = Calendars::startOfDay(2025, 6, 21, TimeZone::utc()) + 9 * 3600;
    EXPECT_EQ(OrvelFormat::timeWithDative(instant, TimeZone::named("Asia/Kolkata")), "14:30'a");

    const Instant november = Calendars::startOfDay(2026, 11, 16, istanbul) + 23 * 3600 + 30 * 60;
    EXPECT_EQ(OrvelFormat::longDate(november, istanbul), "16 Kasım 2026 Pazartesi");
    EXPECT_EQ(OrvelFormat::longDate(november, TimeZone::named("Asia/Tokyo")), "17 Kasım 2026 Salı");

    EXPECT_EQ(OrvelFormat::lowercased("İkindi"), "ikindi");
    EXPECT_EQ(OrvelFormat::lowercased("YATSI"), "yatsı");
}
