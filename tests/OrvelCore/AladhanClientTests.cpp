#include "AladhanClient.h"
#include "Calendars.h"
#include "LoopbackService.h"
#include "TimeZone.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace orvel;
using namespace orvel::test;
using nlohmann::json;

namespace {

using ClientError = AladhanClient::ClientError;

Instant utc(int64_t year, int64_t month, int64_t day, int hour, int minute)
{
    return Calendars::startOfDay(year, month, day, TimeZone::utc()) + hour * 3600 + minute * 60;
}

const TimeZone istanbul = TimeZone::named("Europe/Istanbul");

const std::vector<std::string> ordinaryDay{"05:00 (+03)", "06:30 (+03)", "13:15 (+03)", "16:30 (+03)", "19:00 (+03)", "20:30 (+03)"};

// One day of March 2025 as the service sends it; Imsak and Midnight are never read.
json entry(const std::vector<std::string> &six = ordinaryDay, json day = "01", json hijriDay = "1", json hijriYear = "1446")
{
    json timings = {{"Imsak", "04:50"}, {"Midnight", "00:30"}};
    for (size_t i = 0; i < six.size(); ++i)
        timings[std::array{"Fajr", "Sunrise", "Dhuhr", "Asr", "Maghrib", "Isha"}[i]] = six[i];
    return {{"timings", timings},
            {"date",
             {{"gregorian", {{"day", std::move(day)}, {"month", {{"number", 3}, {"en", "March"}}}, {"year", "2025"}}},
              {"hijri", {{"day", std::move(hijriDay)}, {"month", {{"number", 9}, {"en", "Ramaḍān"}}}, {"year", std::move(hijriYear)}}}}}};
}

// Code 200: a ClientError from such a body can only be an unreadable day.
std::string body(const std::vector<json> &entries) { return json{{"code", 200}, {"status", "OK"}, {"data", entries}}.dump(); }

DayTimes onlyDay(const std::string &text) { return AladhanClient::parse(text, istanbul).at(0); }

} // namespace

TEST(AladhanClientParse, realMonthsInTheirZones)
{
    const struct { const char *file, *zone; size_t days; MonthKey month; size_t index; Prayer prayer; Instant expected; HijriDate hijri; } cases[] = {
        {"calendar_2022-07_newyork_method2_isna.json", "America/New_York", 31, {2022, 7}, 30, Prayer::yatsi, utc(2022, 8, 1, 1, 42), {2, 1, 1444}},
        // Extra timing keys (Firstthird, Lastthird) are ignored.
        {"calendar_2024-02_calgary_method2_isna.json", "America/Edmonton", 29, {2024, 2}, 28, Prayer::yatsi, utc(2024, 3, 1, 2, 47), {19, 8, 1445}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.file);
        const auto days = AladhanClient::parse(readFixture(c.file), *TimeZone::known(c.zone));
        ASSERT_EQ(days.size(), c.days);
        for (size_t i = 0; i < days.size(); ++i) {
            EXPECT_EQ(days[i].day, (DayKey{c.month.year, c.month.month, static_cast<int64_t>(i) + 1}));
            for (size_t p = 1; p < 6; ++p)
                EXPECT_LT(days[i].times[p - 1], days[i].times[p]) << "day " << i + 1;
        }
        EXPECT_EQ(days[c.index][c.prayer], c.expected);
        EXPECT_EQ(days[c.index].hijri, c.hijri);
    }
}

TEST(AladhanClientParse, timingAndDateTexts)
{
    // 2025-03-01 in Istanbul (+03 all year).
    const DayTimes suffixed = onlyDay(body({entry()}));
    EXPECT_EQ(suffixed[Prayer::imsak], utc(2025, 3, 1, 2, 0));
    EXPECT_EQ(suffixed[Prayer::yatsi], utc(2025, 3, 1, 17, 30));

    auto bare = ordinaryDay;
    for (std::string &time : bare)
        time = time.substr(0, 5);
    EXPECT_EQ(onlyDay(body({entry(bare)})), suffixed);
    bare[0] = "5:12";
    EXPECT_EQ(onlyDay(body({entry(bare)}))[Prayer::imsak], utc(2025, 3, 1, 2, 12));

    // Five characters of "5:12 (+03)" leave "5:12 ", whose minutes are no number; characters
    // count, not bytes, so an Arabic-Indic digit or a combining mark is not skipped.
    for (const char *broken : {"-----", "5:12 (+03)", "\u0660" "5:12", "05:12\u0301", "05-12", "", "05:", "ab:cd", " 5:12"}) {
        bare[3] = broken;
        EXPECT_THROW(AladhanClient::parse(body({entry(bare)}), istanbul), ClientError) << broken;
    }
    bare[3] = "16:30";
    // The Imsak key is not İmsak: only Fajr is. One bad day fails the month.
    for (const char *key : {"Isha", "Fajr"}) {
        json missing = entry(bare, "02");
        missing["timings"].erase(key);
        EXPECT_THROW(AladhanClient::parse(body({entry(bare), missing}), istanbul), ClientError) << key;
    }

    EXPECT_EQ(onlyDay(body({entry(ordinaryDay, "+07")})).day, (DayKey{2025, 3, 7}));
    for (const char *day : {"", "7 ", "0x7", "7.0", "٧", "99999999999999999999", "0", "32"})
        EXPECT_THROW(AladhanClient::parse(body({entry(ordinaryDay, day)}), istanbul), ClientError) << day;
    for (const int month : {2, 13}) {
        json badMonth = entry(ordinaryDay, "30");
        badMonth["date"]["gregorian"]["month"]["number"] = month;
        EXPECT_THROW(AladhanClient::parse(body({badMonth}), istanbul), ClientError) << month;
    }
}

TEST(AladhanClientParse, nightTimesPastMidnight)
{
    // Isha at 00:15 after Maghrib at 20:30 is the next morning, on the local calendar.
    const DayTimes late = onlyDay(body({entry({"05:00", "06:30", "13:15", "16:30", "20:30", "00:15"})}));
    EXPECT_EQ(late[Prayer::aksam], utc(2025, 3, 1, 17, 30));
    EXPECT_EQ(late[Prayer::yatsi], utc(2025, 3, 1, 21, 15));

    // Only the time just before counts: once Güneş moved to the next day, Öğle is earlier than it
    // and moves too, while Yatsı, later than Akşam, stays.
    const DayTimes shifted = onlyDay(body({entry({"05:00", "04:00", "13:15", "16:30", "20:30", "21:00"})}));
    EXPECT_EQ(shifted[Prayer::imsak], utc(2025, 3, 1, 2, 0));
    EXPECT_EQ(shifted[Prayer::gunes], utc(2025, 3, 2, 1, 0));
    EXPECT_EQ(shifted[Prayer::ogle], utc(2025, 3, 2, 10, 15));
    EXPECT_EQ(shifted[Prayer::ikindi], utc(2025, 3, 2, 13, 30));

    // The first time is never moved, even when it is late in the evening.
    const DayTimes first = onlyDay(body({entry({"23:50", "23:55", "23:56", "23:57", "23:58", "23:59"})}));
    EXPECT_EQ(first[Prayer::imsak], utc(2025, 3, 1, 20, 50));
}

TEST(AladhanClientParse, hijriDate)
{
    // An unreadable Hijri text drops the Hijri date only.
    const DayTimes withoutHijri{{2025, 3, 1}, onlyDay(body({entry()})).times, std::nullopt};
    const std::pair<const char *, const char *> unreadable[] = {{"x5", "1446"}, {"5", "1446 AH"}, {"", "1446"}};
    for (const auto &[day, year] : unreadable)
        EXPECT_EQ(onlyDay(body({entry(ordinaryDay, "01", day, year)})), withoutHijri) << day << " " << year;

    // In early 2025 the service briefly sent the Hijri day and year as JSON numbers; the day is
    // still good. The sample is cut off mid-way; its one day goes into a month body as sent.
    const std::string sample = readFixture("truncated_raw_timings_2025-01-05_issue83_int-hijri-day-year.txt");
    EXPECT_THROW(AladhanClient::parse(sample, istanbul), json::parse_error);
    const size_t dayStart = sample.find("\"data\":") + 7, dayEnd = sample.find(",\"meta\"");
    ASSERT_NE(dayEnd, std::string::npos);
    json day = json::parse(sample.substr(dayStart, dayEnd - dayStart) + "}");
    ASSERT_TRUE(day["date"]["hijri"]["day"].is_number());
    const TimeZone newYork = TimeZone::named("America/New_York");
    const DayTimes numeric = AladhanClient::parse(json{{"code", 200}, {"data", {day}}}.dump(), newYork).at(0);
    EXPECT_EQ(numeric.hijri, (HijriDate{5, 7, 1446}));
    EXPECT_EQ(numeric.day, (DayKey{2025, 1, 5}));
    // Text and number give the same day; other JSON types are still refused.
    day["date"]["hijri"]["day"] = "5";
    day["date"]["hijri"]["year"] = "1446";
    EXPECT_EQ(AladhanClient::parse(json{{"code", 200}, {"data", {day}}}.dump(), newYork).at(0), numeric);
    day["date"]["hijri"]["day"] = 5.5;
    EXPECT_THROW(AladhanClient::parse(json{{"code", 200}, {"data", {day}}}.dump(), newYork), json::type_error);
}

TEST(AladhanClientParse, dayWithoutItsFieldsIsABadPayload)
{
    // An edited month whose days 2 to 5 were replaced by {}.
    const std::string vienna = readFixture("edited_calendar_2019-05_vienna_method2_isna_legacy-query-form.json");
    try {
        AladhanClient::parse(vienna, TimeZone::named("Europe/Vienna"));
        FAIL() << "a month with empty days was read";
    } catch (const ClientError &error) {
        EXPECT_EQ(error.kind(), ClientError::Kind::badPayload);
    }
    EXPECT_THROW(AladhanClient::parse(body({entry(), json::object()}), istanbul), ClientError);
    EXPECT_THROW(AladhanClient::parse(body({entry(), json::array()}), istanbul), ClientError);
}

TEST(AladhanClientParse, timingsAreTheWallClockOfThePlace)
{
    // Berlin, 30 March 2025: 02:00 CET became 03:00 CEST; 26 October: 03:00 CEST became 02:00 CET.
    const TimeZone berlin = TimeZone::named("Europe/Berlin");
    const auto berlinDay = [&](int month, const char *day, const std::vector<std::string> &six) {
        json one = entry(six, day);
        one["date"]["gregorian"]["month"]["number"] = month;
        return AladhanClient::parse(body({one}), berlin).at(0);
    };
    const DayTimes spring = berlinDay(3, "30", {"01:30 (CET)", "02:30", "13:16 (CEST)", "16:45", "19:44", "21:31"});
    EXPECT_EQ(spring[Prayer::imsak], utc(2025, 3, 30, 0, 30));
    EXPECT_EQ(spring[Prayer::gunes], utc(2025, 3, 30, 1, 30)) << "a time in the gap moves forward past it";
    EXPECT_EQ(spring[Prayer::ogle], utc(2025, 3, 30, 11, 16));
    EXPECT_EQ(spring[Prayer::yatsi], utc(2025, 3, 30, 19, 31));
    const DayTimes autumn = berlinDay(10, "26", {"02:30", "04:57", "11:55", "14:22", "16:55", "18:36"});
    EXPECT_EQ(autumn[Prayer::imsak], utc(2025, 10, 26, 0, 30)) << "a repeated time is its first occurrence";
    EXPECT_EQ(autumn[Prayer::gunes], utc(2025, 10, 26, 3, 57));
    EXPECT_EQ(autumn[Prayer::yatsi], utc(2025, 10, 26, 17, 36));

    // Santiago skips midnight: 6 September 2025 ends at 23:59:59 -04, the 7th begins at 01:00 -03.
    const TimeZone santiago = TimeZone::named("America/Santiago");
    json chile = entry({"00:30", "07:30", "13:40", "17:20", "19:50", "21:00"}, "07");
    chile["date"]["gregorian"]["month"]["number"] = 9;
    const DayTimes skipped = AladhanClient::parse(body({chile}), santiago).at(0);
    EXPECT_EQ(skipped[Prayer::imsak], utc(2025, 9, 7, 4, 30)) << "00:30 does not exist: it reads as 01:30 -03";
    EXPECT_EQ(skipped[Prayer::gunes], utc(2025, 9, 7, 10, 30));
}


class AladhanClientService : public ::testing::Test {
protected:
    void SetUp() override
    {
        service.start();
        service.respond([this](const httplib::Request &, httplib::Response &response) { response.set_content(april, "application/json"); });
    }

    const std::string april = readFixture("calendar_2017-04_istanbul_method2_isna.json");
    LoopbackService service;
};

TEST_F(AladhanClientService, requestPathAndQuery)
{
    const AladhanClient client(service.url("/v1/"));
    const Location sydney{"Sydney", -33.8688, 151.2093, "Australia/Sydney"};
    const auto days = client.month({2017, 4}, sydney, CalculationMethod::diyanet);
    // The service answers April whatever is asked: for another month that is no answer.
    EXPECT_THROW(client.month({2026, 11}, {"Buenos Aires", -34.60372, -58.38159, "America/Argentina/Buenos_Aires"},
                              CalculationMethod::ummAlQura),
                 ClientError);
    EXPECT_THROW(client.month({2026, 1}, {"", 0.00004, -0.00004, "Etc/GMT+3 x&y=z"}, CalculationMethod::egypt), ClientError);

    const auto requests = service.requests();
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_EQ(requests[0].target, "/v1/calendar/2017/4?latitude=-33.8688&longitude=151.2093&method=13&timezonestring=Australia/Sydney");
    EXPECT_EQ(requests[1].target,
              "/v1/calendar/2026/11?latitude=-34.6037&longitude=-58.3816&method=4&timezonestring=America/Argentina/Buenos_Aires");
    EXPECT_EQ(requests[2].target, "/v1/calendar/2026/1?latitude=0.0000&longitude=-0.0000&method=5&timezonestring=Etc/GMT%2B3%20x%26y%3Dz");
    EXPECT_EQ(requests[0].get_header_value("User-Agent"), std::string("Orvel/") + ORVEL_VERSION);
    EXPECT_FALSE(requests[0].get_header_value("Accept-Encoding").empty());
    EXPECT_EQ(client.requestURL({2017, 4}, sydney, CalculationMethod::diyanet), service.url() + requests[0].target.substr(3));

    // The answer is read in the place's zone: Sydney is still +11 on 1 April 2017.
    EXPECT_EQ(days.at(0)[Prayer::imsak], utc(2017, 3, 31, 18, 30));
}

TEST_F(AladhanClientService, unknownZoneReadsInTheMachineZoneAndRedirectsAreFollowed)
{
    service.respond([this](const httplib::Request &request, httplib::Response &response) {
        if (request.path.starts_with("/old/"))
            response.set_redirect(request.target.substr(4), 301);
        else
            response.set_content(april, "application/json");
    });
    const auto days = AladhanClient(service.url("/old/v1")).month({2017, 4}, {"?", 41.0054, 28.9768, "Mars/Olympus_Mons"}, CalculationMethod::isna);
    EXPECT_EQ(days.at(0)[Prayer::imsak], utc(2017, 4, 1, 2, 30)); // the tests' machine zone is Istanbul
    EXPECT_EQ(service.requests().at(0).get_param_value("timezonestring"), "Mars/Olympus_Mons");
    EXPECT_EQ(service.paths(), (std::vector<std::string>{"/old/v1/calendar/2017/4", "/v1/calendar/2017/4"}));
}

TEST_F(AladhanClientService, failuresOfTheService)
{
    const auto fetch = [this](int status, std::string text) {
        service.respond([=](const httplib::Request &, httplib::Response &response) {
            response.status = status;
            response.set_content(text, "application/json");
        });
        return AladhanClient(service.url()).month({2025, 3}, Location::istanbul(), CalculationMethod::diyanet);
    };
    const auto statusOf = [&](int status, std::string text) -> long {
        try {
            fetch(status, std::move(text));
        } catch (const ClientError &error) {
            return error.kind() == ClientError::Kind::badStatus ? error.status() : -1;
        }
        return 0;
    };
    EXPECT_EQ(statusOf(500, ""), 500);
    EXPECT_EQ(statusOf(429, R"({"message":"API rate limit exceeded"})"), 429);
    // A 404 with a body that would parse as a timetable is still a failure.
    EXPECT_EQ(statusOf(404, R"({"code":200,"data":[]})"), 404);
    EXPECT_EQ(statusOf(200, R"({"code":400,"status":"BAD REQUEST","data":[]})"), 400);
    // The service's error form: data is a text, so the body is not a timetable at all.
    EXPECT_THROW(fetch(200, R"({"code":400,"status":"BAD REQUEST","data":"Please specify a valid latitude and longitude."})"), json::type_error);
    EXPECT_THROW(fetch(200, R"({"code":200,"data":[)"), json::parse_error);
    EXPECT_THROW(fetch(200, R"({"message":"API rate limit exceeded"})"), json::out_of_range);
    // The code is checked after the shape: a code 500 with an empty day is an unreadable day.
    EXPECT_EQ(statusOf(200, R"({"code":500,"data":[{}]})"), -1);
    // An empty month is not the month asked for.
    EXPECT_EQ(statusOf(200, R"({"code":200,"data":[]})"), -1);
}

TEST(AladhanClientTransport, noAnswerIsATransportError)
{
    const IdlePort silent(IdlePort::Connections::unanswered), closed(IdlePort::Connections::refused);
    for (const auto &[url, timeout] : {std::pair{silent.url(), 300}, std::pair{closed.url(), 2000}, std::pair{std::string("file:///etc/v1"), 2000}}) {
        SCOPED_TRACE(url);
        EXPECT_THROW(AladhanClient(url, std::chrono::milliseconds(timeout)).month({2025, 3}, Location::istanbul(), CalculationMethod::diyanet),
                     AladhanClient::TransportError);
    }
}
