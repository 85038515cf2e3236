#include "CliRun.h"
#include "LoopbackService.h"
#include "PrayerRepository.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <functional>
#include <mutex>

using namespace orvel;
using nlohmann::json;

namespace {

// April 2017 in Istanbul as the service answered it, with the 10th's İmsak moved from 05:14 to
// 04:44 so that the service's times cannot be mistaken for the calculator's.
const std::string aprilBody = [] {
    json body = json::parse(test::readFixture("calendar_2017-04_istanbul_method2_isna.json"));
    body["data"][9]["timings"]["Fajr"] = "04:44 (+03)";
    return body.dump();
}();

// The service answers April 2017 under /v1, 404 for other months and 500 under /broken.
class CliOnline : public ::testing::Test {
protected:
    void SetUp() override
    {
        service.respond([](const httplib::Request &request, httplib::Response &response) {
            if (request.path.starts_with("/broken/"))
                response.status = 500;
            else if (request.path == "/v1/calendar/2017/4")
                response.set_content(aprilBody, "application/json");
            else
                response.status = 404;
        });
        service.start();
        std::filesystem::remove_all(cache);
    }
    void TearDown() override { std::filesystem::remove_all(cache); }

    // Cached months, not the notes of failures beside them.
    long cachedFiles() const
    {
        if (!std::filesystem::exists(cache))
            return 0;
        return std::ranges::count_if(std::filesystem::directory_iterator(cache),
                                     [](const auto &entry) { return entry.path().extension() == ".json"; });
    }

    // The fixture's method, the given service and this test's cache.
    CliRun run(std::vector<std::string> args, const std::string &url) const
    {
        args.insert(args.end(), {"--method", "isna", "--service", url, "--cache", cache.string()});
        return runCli(args);
    }

    test::LoopbackService service;
    const std::filesystem::path cache = std::filesystem::temp_directory_path() / ("orvel-cli-cache-" + std::to_string(getpid()));
};

} // namespace

TEST_F(CliOnline, serviceMonthIsShownAndCachedOnce)
{
    // A trailing slash on the base address is harmless.
    const CliRun first = run({"times", "--json", "--date", "2017-04-10", "--days", "2"}, service.url("/v1/"));
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.err, "");
    const json document = json::parse(first.out);
    EXPECT_EQ(document.at("source"), "online");
    ASSERT_EQ(document.at("days").size(), 2u);
    EXPECT_EQ(document["days"][0]["clock"], json({"04:44", "06:33", "13:05", "16:46", "19:39", "20:58"}));
    EXPECT_EQ(document["days"][1]["clock"], json({"05:12", "06:31", "13:05", "16:46", "19:40", "20:59"}));
    EXPECT_EQ(service.paths(), std::vector<std::string>{"/v1/calendar/2017/4"});
    EXPECT_EQ(service.requests().back().get_param_value("method"), "2");
    EXPECT_EQ(service.requests().back().get_param_value("timezonestring"), "Europe/Istanbul");
    EXPECT_EQ(cachedFiles(), 1);

    // Later runs read the cache file and leave the service alone.
    const CliRun second = run({"times", "--date", "2017-04-10"}, service.url());
    ASSERT_EQ(second.status, 0) << second.err;
    EXPECT_EQ(second.err, "");
    EXPECT_TRUE(second.out.ends_with("\nKaynak: çevrimiçi\n")) << second.out;
    EXPECT_NE(second.out.find("04:44"), std::string::npos) << second.out;
    const CliRun status = run({"status", "--format", "json", "--now", "2017-04-10T12:00"}, service.url());
    ASSERT_EQ(status.status, 0) << status.err;
    EXPECT_EQ(json::parse(status.out).at("source"), "online");
    EXPECT_EQ(service.paths().size(), 1u);
}

TEST_F(CliOnline, daysAcrossMonthsFetchEachMonthOnce)
{
    // April comes from the service in one request; May fails (404) and is computed, which makes
    // the whole answer offline.
    const CliRun both = run({"times", "--json", "--date", "2017-04-01", "--days", "31"}, service.url());
    ASSERT_EQ(both.status, 0) << both.err;
    EXPECT_EQ(both.err, "");
    EXPECT_EQ(service.paths(), std::vector<std::string>({"/v1/calendar/2017/4", "/v1/calendar/2017/5"}));
    const json document = json::parse(both.out);
    EXPECT_EQ(document.at("source"), "offline");
    ASSERT_EQ(document.at("days").size(), 31u);
    EXPECT_EQ(document["days"][9]["clock"][0], "04:44");
    const json may = json::parse(run({"times", "--json", "--offline", "--date", "2017-05-01"}, service.url()).out);
    EXPECT_EQ(document["days"][30], may["days"][0]);
    EXPECT_EQ(cachedFiles(), 1);
}

TEST_F(CliOnline, failingServiceFallsBackToTheCalculatorAndSaysSo)
{
    const test::IdlePort dead(test::IdlePort::Connections::refused);
    const std::string warning = "orvel-cli: web servisinden vakit alınamadı; vakitler cihazda hesaplandı\n";
    for (const std::vector<std::string> &args : {std::vector<std::string>{"times", "--json", "--date", "2017-04-10"},
                                                 {"times", "--date", "2017-04-10"}, {"status", "--now", "2017-04-10T12:00"}}) {
        std::vector<std::string> offlineArgs = args;
        offlineArgs.push_back("--offline");
        const std::string offline = run(offlineArgs, service.url()).out;
        for (const std::string &url : {dead.url(), service.url("/broken")}) {
            SCOPED_TRACE(url + " " + args[1]);
            const CliRun fallback = run(args, url);
            EXPECT_EQ(fallback.status, 0);
            EXPECT_EQ(fallback.out, offline);
            // JSON readers get a clean stream; people are told.
            EXPECT_EQ(fallback.err, args[1] == "--json" ? "" : warning);
        }
    }
    EXPECT_EQ(service.paths(), std::vector<std::string>(3, "/broken/calendar/2017/4"));
    EXPECT_EQ(cachedFiles(), 0);
}

TEST_F(CliOnline, aFailedMonthIsLeftAloneForHalfAnHour)
{
    std::atomic<bool> failing = true;
    service.respond([&failing](const httplib::Request &, httplib::Response &response) {
        if (failing)
            response.status = 503;
        else
            response.set_content(aprilBody, "application/json");
    });
    const std::vector<std::string> status{"status", "--format", "json", "--now", "2017-04-10T12:00"};
    for (int poll = 0; poll < 3; ++poll)
        EXPECT_EQ(json::parse(run(status, service.url()).out).at("source"), "offline");
    EXPECT_EQ(service.paths().size(), 1u) << "later polls and commands do not ask again";
    failing = false;
    EXPECT_EQ(json::parse(run({"times", "--json", "--date", "2017-04-10"}, service.url()).out).at("source"), "offline");
    EXPECT_EQ(service.paths().size(), 1u);

    // Another service is asked at once.
    test::LoopbackService other;
    other.respond([](const httplib::Request &, httplib::Response &response) { response.set_content(aprilBody, "application/json"); });
    other.start();
    EXPECT_EQ(json::parse(run(status, other.url()).out).at("source"), "online");
    std::filesystem::remove_all(cache);

    // Half an hour on, the service is asked again; its answer clears the failure.
    failing = true;
    run(status, service.url());
    ASSERT_EQ(service.paths().size(), 2u);
    for (const auto &entry : std::filesystem::directory_iterator(cache)) {
        json failure = json::parse(std::ifstream(entry.path()));
        failure["at"] = failure["at"].get<double>() - 1801;
        std::ofstream(entry.path()) << failure.dump();
    }
    failing = false;
    EXPECT_EQ(json::parse(run(status, service.url()).out).at("source"), "online");
    EXPECT_EQ(service.paths().size(), 3u);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(cache), {}), 1) << "only the month is left";
}

TEST_F(CliOnline, libcurlLoadsOnlyWhenAMonthIsFetched)
{
    // What the dynamic loader maps at start-up. A libcurl function that LazyCurl does not define
    // would bring the library, and its thirty dependencies, back into every start.
    const std::string loaded = runShell("LD_TRACE_LOADED_OBJECTS=1 " + quoted(ORVEL_CLI_PATH)).out;
    EXPECT_NE(loaded.find("libicuuc"), std::string::npos) << loaded;
    EXPECT_EQ(loaded.find("libcurl"), std::string::npos) << loaded;
}

// The real April answer with one fault at a time is a bad answer: never shown as online, never
// cached, and the right answer is taken at the next request.
TEST_F(CliOnline, aWrongMonthIsNeitherShownNorKept)
{
    const json april = json::parse(aprilBody);
    const std::pair<const char *, std::function<void(json &)>> faults[] = {
        {"another year", [](json &body) { for (json &day : body["data"]) day["date"]["gregorian"]["year"] = "2018"; }},
        {"days missing", [](json &body) { body["data"].erase(body["data"].begin() + 20, body["data"].end()); }},
        {"25:99", [](json &body) { body["data"][3]["timings"]["Asr"] = "25:99 (+03)"; }},
        {"Isha before Fajr", [](json &body) { body["data"][9]["timings"]["Isha"] = "04:00 (+03)"; }},
    };
    std::string served;
    std::mutex mutex;
    service.respond([&](const httplib::Request &, httplib::Response &response) {
        const std::lock_guard lock(mutex);
        response.set_content(served, "application/json");
    });
    size_t asked = 0;
    for (const auto &[fault, spoil] : faults) {
        SCOPED_TRACE(fault);
        json body = april;
        spoil(body);
        {
            const std::lock_guard lock(mutex);
            served = body.dump();
        }
        const json times = json::parse(run({"times", "--json", "--date", "2017-04-10"}, service.url()).out);
        EXPECT_EQ(times.at("source"), "offline");
        EXPECT_EQ(cachedFiles(), 0);
        EXPECT_EQ(service.paths().size(), ++asked);
        // Like any failure, it is left alone for a while; the next fault starts afresh.
        EXPECT_EQ(json::parse(run({"times", "--json", "--date", "2017-04-10"}, service.url()).out).at("source"), "offline");
        EXPECT_EQ(service.paths().size(), asked);
        std::filesystem::remove_all(cache);
    }
    {
        const std::lock_guard lock(mutex);
        served = aprilBody;
    }
    const json times = json::parse(run({"times", "--json", "--date", "2017-04-10"}, service.url()).out);
    EXPECT_EQ(times.at("source"), "online");
    EXPECT_EQ(times.at("days")[0].at("clock")[0], "04:44");
    EXPECT_EQ(cachedFiles(), 1);

    // A damaged cache file is not shown either: it is replaced by the service's month.
    const auto file = std::filesystem::directory_iterator(cache)->path();
    json cached = json::parse(std::ifstream(file));
    cached[9]["times"][0] = 1e308;
    std::ofstream(file) << cached.dump();
    EXPECT_EQ(json::parse(run({"times", "--json", "--date", "2017-04-10"}, service.url()).out).at("source"), "online");
    EXPECT_EQ(service.paths().size(), asked + 2);
}

// A link where the failure note goes is replaced, not written through.
TEST_F(CliOnline, AFailureNoteNeverWritesThroughALink)
{
    std::filesystem::create_directories(cache);
    const std::filesystem::path victim = cache.parent_path() / ("orvel-victim-" + std::to_string(getpid()));
    std::ofstream(victim) << "untouched";
    const Location place{"", 41.0, 29.0, "Europe/Istanbul"};
    const std::filesystem::path note =
        cache / (PrayerRepository::cacheFileName({2017, 4}, place, CalculationMethod::isna) + ".failed");
    std::filesystem::create_symlink(victim, note);
    const CliRun times = run({"times", "--json", "--date", "2017-04-10", "--lat", "41", "--lon", "29", "--tz", "Europe/Istanbul"},
                             service.url("/broken/"));
    EXPECT_EQ(json::parse(times.out).at("source"), "offline");
    EXPECT_EQ(takeFile(victim), "untouched");
    EXPECT_FALSE(std::filesystem::is_symlink(note)) << "the note took the link's place";
    std::filesystem::remove(victim);
}

// A service that takes the connection and never answers costs one wait, not one per month.
TEST_F(CliOnline, ADeadServiceIsWaitedForOnce)
{
    const test::IdlePort silent(test::IdlePort::Connections::unanswered);
    const CliRun year = run({"times", "--json", "--date", "2017-01-01", "--days", "400"}, silent.url());
    EXPECT_EQ(year.status, 0);
    EXPECT_EQ(json::parse(year.out).at("days").size(), 400u);
    long notes = 0;
    for (const auto &entry : std::filesystem::directory_iterator(cache))
        notes += entry.path().extension() == ".failed" ? 1 : 0;
    EXPECT_EQ(notes, 1) << "only the first month was asked for";
}
