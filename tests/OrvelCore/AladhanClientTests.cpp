#include "AladhanClient.h"
#include "Calendars.h"
#include "LoopbackService.h"
#include "TimeZone.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <clocale>
#include <locale>

using namespace orvel;
using namespace orvel::test;
using nlohmann::json;

namespace {

using ClientError = AladhanClient::ClientError;

Instant utc(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute)
{
    return Instant::fromUnix(static_cast<double>(Calendars::daysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60));
}

const TimeZone &istanbul()
{
    static const TimeZone zone = *TimeZone::known("Europe/Istanbul");
    return zone;
}

json timings(const std::vector<std::string> &six)
{
    static const std::array<const char *, 6> keys{"Fajr", "Sunrise", "Dhuhr", "Asr", "Maghrib", "Isha"};
    json object = {{"Imsak", "04:50"}, {"Midnight", "00:30"}};
    for (size_t i = 0; i < six.size(); ++i)
        object[keys[i]] = six[i];
    return object;
}

const std::vector<std::string> ordinaryDay{"05:00 (+03)", "06:30 (+03)", "13:15 (+03)", "16:30 (+03)", "19:00 (+03)", "20:30 (+03)"};

json entry(json times, json day = "01", json hijriDay = "1", json hijriYear = "1446")
{
    return {{"timings", std::move(times)},
            {"date",
             {{"readable", "01 Mar 2025"},
              {"gregorian", {{"day", std::move(day)}, {"month", {{"number", 3}, {"en", "March"}}}, {"year", "2025"}}},
              {"hijri", {{"day", std::move(hijriDay)}, {"month", {{"number", 9}, {"en", "Ramaḍān"}}}, {"year", std::move(hijriYear)}}}}}};
}

std::string body(const std::vector<json> &entries, int code = 200)
{
    return json{{"code", code}, {"status", "OK"}, {"data", entries}}.dump();
}

// The kind of a client error thrown while parsing, or none when the body parsed.
std::optional<ClientError::Kind> clientErrorOf(const std::string &text)
{
    try {
        AladhanClient::parse(text, istanbul());
    } catch (const ClientError &error) {
        return error.kind();
    }
    return std::nullopt;
}

struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

DayTimes onlyDay(const std::string &text)
{
    const auto days = AladhanClient::parse(text, istanbul());
    if (days.size() != 1)
        throw std::runtime_error("expected one day");
    return days.front();
}

} // namespace

TEST(AladhanClientParse, realMonthsInTheirZones)
{
    struct Case {
        const char *file;
        const char *zone;
        size_t days;
        MonthKey month;
        size_t index;
        Prayer prayer;
        Instant expected;
        HijriDate hijri;
    };
    const Case cases[] = {
        {"calendar_2017-04_istanbul_method2_isna.json", "Europe/Istanbul", 30, {2017, 4}, 0, Prayer::imsak, utc(2017, 4, 1, 2, 30), {4, 7, 1438}},
        {"calendar_2017-04_london-lat0lon0_method2_isna.json", "Europe/London", 30, {2017, 4}, 29, Prayer::yatsi, utc(2017, 4, 30, 21, 18), {3, 8, 1438}},
        {"calendar_2019-04_makassar_method2_isna.json", "Asia/Makassar", 30, {2019, 4}, 0, Prayer::imsak, utc(2019, 3, 31, 21, 8), {25, 7, 1440}},
        {"calendar_2022-04_rawalpindi_method1_karachi.json", "Asia/Karachi", 30, {2022, 4}, 29, Prayer::aksam, utc(2022, 4, 30, 13, 50), {28, 9, 1443}},
        {"calendar_2022-07_newyork_method2_isna.json", "America/New_York", 31, {2022, 7}, 30, Prayer::yatsi, utc(2022, 8, 1, 1, 42), {2, 1, 1444}},
        {"calendar_2023-05_kenitra-casablanca-tz_method3_mwl.json", "Africa/Casablanca", 31, {2023, 5}, 0, Prayer::imsak, utc(2023, 5, 1, 4, 2), {10, 10, 1444}},
        // Extra timing keys (Firstthird, Lastthird) are ignored.
        {"calendar_2024-02_calgary_method2_isna.json", "America/Edmonton", 29, {2024, 2}, 28, Prayer::yatsi, utc(2024, 3, 1, 2, 47), {19, 8, 1445}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.file);
        const auto days = AladhanClient::parse(readFixture(c.file), *TimeZone::known(c.zone));
        ASSERT_EQ(days.size(), c.days);
        for (size_t i = 0; i < days.size(); ++i) {
            EXPECT_EQ(days[i].day, (DayKey{c.month.year, c.month.month, static_cast<int64_t>(i) + 1}));
            EXPECT_TRUE(days[i].hijri.has_value());
            for (size_t p = 1; p < 6; ++p)
                EXPECT_LT(days[i].times[p - 1], days[i].times[p]) << "day " << i + 1;
        }
        EXPECT_EQ(days[c.index][c.prayer], c.expected);
        EXPECT_EQ(days[c.index].hijri, c.hijri);
    }
}

TEST(AladhanClientParse, timingTexts)
{
    // 2025-03-01 in Istanbul (+03 all year).
    const DayTimes suffixed = onlyDay(body({entry(timings(ordinaryDay))}));
    EXPECT_EQ(suffixed.day, (DayKey{2025, 3, 1}));
    EXPECT_EQ(suffixed[Prayer::imsak], utc(2025, 3, 1, 2, 0));
    EXPECT_EQ(suffixed[Prayer::yatsi], utc(2025, 3, 1, 17, 30));

    auto bare = ordinaryDay;
    for (std::string &time : bare)
        time = time.substr(0, 5);
    EXPECT_EQ(onlyDay(body({entry(timings(bare))})), suffixed);

    // Five characters of "5:12 (+03)" leave "5:12 ", whose minutes are not a number; a bare
    // "5:12" is 05:12.
    auto oneDigit = bare;
    oneDigit[0] = "5:12";
    EXPECT_EQ(onlyDay(body({entry(timings(oneDigit))}))[Prayer::imsak], utc(2025, 3, 1, 2, 12));
    oneDigit[0] = "5:12 (+03)";
    EXPECT_EQ(clientErrorOf(body({entry(timings(oneDigit))})), ClientError::Kind::badPayload);

    // Characters, not bytes: "٠5:12" (an Arabic-Indic digit first) is not read as 05:12, and a
    // combining mark belongs to the fifth character.
    auto unusual = bare;
    unusual[0] = "\u0660" "5:12";
    EXPECT_EQ(clientErrorOf(body({entry(timings(unusual))})), ClientError::Kind::badPayload);
    unusual[0] = "05:12\u0301";
    EXPECT_EQ(clientErrorOf(body({entry(timings(unusual))})), ClientError::Kind::badPayload);

    for (const char *broken : {"-----", "05-12", "0x5:1", "", "05:", "ab:cd", " 5:12"}) {
        SCOPED_TRACE(broken);
        auto times = bare;
        times[3] = broken;
        EXPECT_EQ(clientErrorOf(body({entry(timings(times))})), ClientError::Kind::badPayload);
    }

    json missing = timings(bare);
    missing.erase("Isha");
    EXPECT_EQ(clientErrorOf(body({entry(missing)})), ClientError::Kind::badPayload);
    // The Imsak key is not İmsak: only Fajr is.
    json noFajr = timings(bare);
    noFajr.erase("Fajr");
    EXPECT_EQ(clientErrorOf(body({entry(noFajr)})), ClientError::Kind::badPayload);
    // One bad day fails the month.
    EXPECT_EQ(clientErrorOf(body({entry(timings(bare)), entry(missing, "02")})), ClientError::Kind::badPayload);
}

TEST(AladhanClientParse, nightTimesPastMidnight)
{
    // Isha at 00:15 after Maghrib at 20:30 is the next morning, on the local calendar.
    const DayTimes late = onlyDay(body({entry(timings({"05:00", "06:30", "13:15", "16:30", "20:30", "00:15"}))}));
    EXPECT_EQ(late[Prayer::aksam], utc(2025, 3, 1, 17, 30));
    EXPECT_EQ(late[Prayer::yatsi], utc(2025, 3, 1, 21, 15));

    // Only the time just before counts: once Güneş moved to the next day, Öğle is earlier than it
    // and moves too, while Yatsı, later than Akşam, stays.
    const DayTimes shifted = onlyDay(body({entry(timings({"05:00", "04:00", "13:15", "16:30", "20:30", "21:00"}))}));
    EXPECT_EQ(shifted[Prayer::imsak], utc(2025, 3, 1, 2, 0));
    EXPECT_EQ(shifted[Prayer::gunes], utc(2025, 3, 2, 1, 0));
    EXPECT_EQ(shifted[Prayer::ogle], utc(2025, 3, 2, 10, 15));
    EXPECT_EQ(shifted[Prayer::ikindi], utc(2025, 3, 2, 13, 30));

    // The first time is never moved, even when it is late in the evening.
    const DayTimes first = onlyDay(body({entry(timings({"23:50", "23:55", "23:56", "23:57", "23:58", "23:59"}))}));
    EXPECT_EQ(first[Prayer::imsak], utc(2025, 3, 1, 20, 50));
}

TEST(AladhanClientParse, statusAndShapeOfTheBody)
{
    EXPECT_TRUE(AladhanClient::parse(R"({"code":200,"data":[]})", istanbul()).empty());

    // The service's error form: data is a text, so the body is not a timetable at all.
    const std::string errorText = R"({"code":400,"status":"BAD REQUEST","data":"Please specify a valid latitude and longitude."})";
    EXPECT_THROW(AladhanClient::parse(errorText, istanbul()), json::type_error);
    try {
        AladhanClient::parse(R"({"code":400,"status":"BAD REQUEST","data":[]})", istanbul());
        ADD_FAILURE() << "no error";
    } catch (const ClientError &error) {
        EXPECT_EQ(error.kind(), ClientError::Kind::badStatus);
        EXPECT_EQ(error.status(), 400);
    }
    // The code is checked after the shape: a code 500 with a malformed day is a decoding error.
    EXPECT_THROW(AladhanClient::parse(R"({"code":500,"data":[{}]})", istanbul()), json::out_of_range);

    const std::string month = readFixture("calendar_2017-04_istanbul_method2_isna.json");
    EXPECT_THROW(AladhanClient::parse(month.substr(0, month.size() / 2), istanbul()), json::parse_error);
    EXPECT_THROW(AladhanClient::parse("", istanbul()), json::parse_error);
    EXPECT_THROW(AladhanClient::parse(R"({"message":"API rate limit exceeded"})", istanbul()), json::out_of_range);
    EXPECT_THROW(AladhanClient::parse(R"({"code":"200","data":[]})", istanbul()), json::type_error);
    EXPECT_THROW(AladhanClient::parse(R"({"code":200.5,"data":[]})", istanbul()), json::type_error);
    EXPECT_THROW(AladhanClient::parse(R"([1,2])", istanbul()), json::type_error);

    // Every timing is declared text, also those never read.
    json numericExtra = entry(timings(ordinaryDay));
    numericExtra["timings"]["Midnight"] = 30;
    EXPECT_THROW(AladhanClient::parse(body({numericExtra}), istanbul()), json::type_error);
    json numericMonth = entry(timings(ordinaryDay));
    numericMonth["date"]["gregorian"]["month"]["number"] = "3";
    EXPECT_THROW(AladhanClient::parse(body({numericMonth}), istanbul()), json::type_error);

    // The edited Vienna month has days 2 to 5 replaced by {}: days without "timings" or "date"
    // do not have the declared shape, so the decoder refuses the body (not a bad payload).
    const std::string vienna = readFixture("edited_calendar_2019-05_vienna_method2_isna_legacy-query-form.json");
    EXPECT_THROW(AladhanClient::parse(vienna, *TimeZone::known("Europe/Vienna")), json::out_of_range);
}

TEST(AladhanClientParse, datesOfTheDays)
{
    EXPECT_EQ(onlyDay(body({entry(timings(ordinaryDay), "+07")})).day, (DayKey{2025, 3, 7}));
    EXPECT_EQ(onlyDay(body({entry(timings(ordinaryDay), "7")})).day, (DayKey{2025, 3, 7}));
    for (const char *day : {"", "7 ", "0x7", "+-7", "7.0", "٧", "99999999999999999999", "0", "32"}) {
        SCOPED_TRACE(day);
        EXPECT_EQ(clientErrorOf(body({entry(timings(ordinaryDay), day)})), ClientError::Kind::badPayload);
    }
    json badMonth = entry(timings(ordinaryDay), "30");
    badMonth["date"]["gregorian"]["month"]["number"] = 2;
    EXPECT_EQ(clientErrorOf(body({badMonth})), ClientError::Kind::badPayload);
    badMonth["date"]["gregorian"]["month"]["number"] = 13;
    EXPECT_EQ(clientErrorOf(body({badMonth})), ClientError::Kind::badPayload);

    // The days come back as the service sent them, neither sorted nor checked against a month.
    const auto days = AladhanClient::parse(body({entry(timings(ordinaryDay), "09"), entry(timings(ordinaryDay), "02")}), istanbul());
    ASSERT_EQ(days.size(), 2u);
    EXPECT_EQ(days[0].day.day, 9);
    EXPECT_EQ(days[1].day.day, 2);
}

TEST(AladhanClientParse, hijriDate)
{
    EXPECT_EQ(onlyDay(body({entry(timings(ordinaryDay))})).hijri, (HijriDate{1, 9, 1446}));
    EXPECT_EQ(onlyDay(body({entry(timings(ordinaryDay), "01", "-3", "+1446")})).hijri, (HijriDate{-3, 9, 1446}));

    // An unreadable Hijri text drops the Hijri date only.
    const std::initializer_list<std::pair<const char *, const char *>> unreadable{{"x5", "1446"}, {"5", "1446 AH"}, {"", "1446"}};
    for (const auto &[day, year] : unreadable) {
        SCOPED_TRACE(day);
        const DayTimes read = onlyDay(body({entry(timings(ordinaryDay), "01", day, year)}));
        EXPECT_FALSE(read.hijri.has_value());
        EXPECT_EQ(read[Prayer::yatsi], utc(2025, 3, 1, 17, 30));
    }

    // In early 2025 the service briefly sent the Hijri day and year as JSON numbers. They are
    // declared as text, so such a body does not decode: the month then comes from the
    // calculator, exactly as for any other malformed answer. The sample is cut off mid-way; its
    // one day is put into a month body as the service sent it.
    const std::string sample = readFixture("truncated_raw_timings_2025-01-05_issue83_int-hijri-day-year.txt");
    EXPECT_THROW(AladhanClient::parse(sample, istanbul()), json::parse_error);
    const size_t dayStart = sample.find("\"data\":") + 7;
    const size_t dayEnd = sample.find(",\"meta\"");
    ASSERT_NE(dayEnd, std::string::npos);
    const std::string dayObject = sample.substr(dayStart, dayEnd - dayStart) + "}";
    const TimeZone newYork = *TimeZone::known("America/New_York");
    EXPECT_THROW(AladhanClient::parse(R"({"code":200,"data":[)" + dayObject + "]}", newYork), json::type_error);

    json asText = json::parse(dayObject);
    asText["date"]["hijri"]["day"] = "5";
    asText["date"]["hijri"]["year"] = "1446";
    const auto days = AladhanClient::parse(json{{"code", 200}, {"data", {asText}}}.dump(), newYork);
    ASSERT_EQ(days.size(), 1u);
    EXPECT_EQ(days[0].hijri, (HijriDate{5, 7, 1446}));
    EXPECT_EQ(days[0][Prayer::imsak], utc(2025, 1, 5, 11, 23));
}

TEST(AladhanClientParse, escapedAndRawTextReadAlike)
{
    json day = entry(timings(ordinaryDay));
    day["date"]["hijri"]["month"]["ar"] = "رَمَضان";
    day["meta"] = {{"timezone", "Europe/Istanbul"}, {"method", {{"name", "Diyanet İşleri Başkanlığı"}}}};
    const json document{{"code", 200}, {"data", {day}}};
    const std::string raw = document.dump();
    std::string escaped = document.dump(-1, ' ', true);
    ASSERT_NE(escaped.find("\\u0130"), std::string::npos);
    for (size_t at = escaped.find('/'); at != std::string::npos; at = escaped.find('/', at + 2))
        escaped.replace(at, 1, "\\/");
    EXPECT_EQ(AladhanClient::parse(escaped, istanbul()), AladhanClient::parse(raw, istanbul()));
}

// ---- Against a loopback server ----

class AladhanClientService : public ::testing::Test {
protected:
    void SetUp() override { service.start(); }
    void TearDown() override { service.stop(); }

    LoopbackService service;
};

TEST_F(AladhanClientService, requestPathAndQuery)
{
    const std::string april = readFixture("calendar_2017-04_istanbul_method2_isna.json");
    service.respond([&](const httplib::Request &, httplib::Response &response) { response.set_content(april, "application/json"); });

    // The decimal point must survive a process locale with a decimal comma.
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    std::setlocale(LC_NUMERIC, "tr_TR.UTF-8");
    const AladhanClient client(service.url("/v1/"));
    const Location sydney{"Sydney", -33.8688, 151.2093, "Australia/Sydney"};
    const auto days = client.month({2017, 4}, sydney, CalculationMethod::diyanet);
    client.month({2026, 11}, {"Buenos Aires", -34.60372, -58.38159, "America/Argentina/Buenos_Aires"}, CalculationMethod::ummAlQura);
    client.month({2026, 1}, {"", 0.00004, -0.00004, "Etc/GMT+3 x&y=z"}, CalculationMethod::egypt);
    std::setlocale(LC_NUMERIC, "C");
    std::locale::global(previous);

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
    ASSERT_EQ(days.size(), 30u);
    EXPECT_EQ(days[0][Prayer::imsak], utc(2017, 3, 31, 18, 30));
}

TEST_F(AladhanClientService, unknownZoneReadsInTheMachineZone)
{
    const std::string april = readFixture("calendar_2017-04_istanbul_method2_isna.json");
    service.respond([&](const httplib::Request &, httplib::Response &response) { response.set_content(april, "application/json"); });
    const auto days = AladhanClient(service.url()).month({2017, 4}, {"?", 41.0054, 28.9768, "Mars/Olympus_Mons"}, CalculationMethod::isna);
    ASSERT_EQ(days.size(), 30u);
    EXPECT_EQ(days[0][Prayer::imsak], utc(2017, 4, 1, 2, 30)); // the tests' machine zone is Istanbul
    EXPECT_EQ(service.requests().at(0).get_param_value("timezonestring"), "Mars/Olympus_Mons");
}

TEST_F(AladhanClientService, failuresOfTheService)
{
    const AladhanClient client(service.url());
    const auto statusOf = [&](std::function<void(httplib::Response &)> answer) -> long {
        service.respond([answer](const httplib::Request &, httplib::Response &response) { answer(response); });
        try {
            client.month({2025, 3}, Location::istanbul(), CalculationMethod::diyanet);
        } catch (const ClientError &error) {
            return error.kind() == ClientError::Kind::badStatus ? error.status() : -1;
        }
        return 0;
    };
    EXPECT_EQ(statusOf([](httplib::Response &r) { r.status = 500; }), 500);
    EXPECT_EQ(statusOf([](httplib::Response &r) {
                  r.status = 429;
                  r.set_content(R"({"message":"API rate limit exceeded"})", "application/json");
              }),
              429);
    // A 404 with a body that would parse as a timetable is still a failure.
    EXPECT_EQ(statusOf([](httplib::Response &r) {
                  r.status = 404;
                  r.set_content(R"({"code":200,"data":[]})", "application/json");
              }),
              404);
    EXPECT_EQ(statusOf([](httplib::Response &r) { r.set_content(R"({"code":400,"status":"BAD REQUEST","data":[]})", "application/json"); }), 400);

    service.respond([](const httplib::Request &, httplib::Response &r) {
        r.set_content(R"({"code":400,"status":"BAD REQUEST","data":"Please specify a valid latitude and longitude."})", "application/json");
    });
    EXPECT_THROW(client.month({2025, 3}, Location::istanbul(), CalculationMethod::diyanet), json::type_error);
    service.respond([](const httplib::Request &, httplib::Response &r) { r.set_content(R"({"code":200,"data":[)", "application/json"); });
    EXPECT_THROW(client.month({2025, 3}, Location::istanbul(), CalculationMethod::diyanet), json::parse_error);
}

TEST_F(AladhanClientService, redirectsAreFollowed)
{
    const std::string april = readFixture("calendar_2017-04_istanbul_method2_isna.json");
    service.respond([&](const httplib::Request &request, httplib::Response &response) {
        if (request.path.starts_with("/old/"))
            response.set_redirect(request.target.substr(4), 301);
        else
            response.set_content(april, "application/json");
    });
    const auto days = AladhanClient(service.url("/old/v1")).month({2017, 4}, Location::istanbul(), CalculationMethod::isna);
    EXPECT_EQ(days.size(), 30u);
    EXPECT_EQ(service.paths(), (std::vector<std::string>{"/old/v1/calendar/2017/4", "/v1/calendar/2017/4"}));
}

TEST(AladhanClientTransport, noAnswerIsATransportError)
{
    const IdlePort silent(IdlePort::Connections::unanswered);
    const AladhanClient patient(silent.url(), std::chrono::milliseconds(300));
    try {
        patient.month({2025, 3}, Location::istanbul(), CalculationMethod::diyanet);
        ADD_FAILURE() << "no error";
    } catch (const AladhanClient::TransportError &error) {
        EXPECT_NE(std::string(error.what()), "");
    }

    const IdlePort closed(IdlePort::Connections::refused);
    EXPECT_THROW(AladhanClient(closed.url(), std::chrono::milliseconds(2000)).month({2025, 3}, Location::istanbul(), CalculationMethod::diyanet),
                 AladhanClient::TransportError);
    EXPECT_THROW(AladhanClient("file:///etc/v1").month({2025, 3}, Location::istanbul(), CalculationMethod::diyanet),
                 AladhanClient::TransportError);
}
