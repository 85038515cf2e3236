#include "AladhanClient.h"
#include "CliRun.h"
#include "LoopbackService.h"
#include "Location.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <unistd.h>

using namespace orvel;
using nlohmann::json;

namespace {

// April 2017 in Istanbul as the service answered it, with the 10th's İmsak moved to 04:44 so that
// the service's times cannot be mistaken for the calculator's.
std::string aprilBody()
{
    json body = json::parse(test::readFixture("calendar_2017-04_istanbul_method2_isna.json"));
    body["data"][9]["timings"]["Fajr"] = "04:44 (+03)";
    return body.dump();
}

// The web service on the loopback interface: April 2017 under /v1, 404 for other months, 500
// under /broken.
class AprilService {
public:
    AprilService()
        : body_(aprilBody())
    {
        service_.respond([this](const httplib::Request &request, httplib::Response &response) {
            if (request.path.starts_with("/broken/"))
                response.status = 500;
            else if (request.path == "/v1/calendar/2017/4")
                response.set_content(body_, "application/json");
            else
                response.status = 404;
        });
        service_.start();
    }

    std::string url(const std::string &path = "/v1") const { return service_.url(path); }
    // Requests whose path starts with the prefix ("/v1/calendar/2017/4", "/broken").
    long hits(const std::string &prefix) const
    {
        const std::vector<std::string> paths = service_.paths();
        return std::count_if(paths.begin(), paths.end(), [&](const std::string &path) { return path.starts_with(prefix); });
    }
    std::string lastQuery(const std::string &key) const { return service_.requests().back().get_param_value(key); }
    const std::string &body() const { return body_; }

private:
    std::string body_;
    test::LoopbackService service_;
};

class TempFolder {
public:
    TempFolder()
        : path_(std::filesystem::temp_directory_path() / ("orvel-cli-cache-" + std::to_string(getpid()) + "-" + std::to_string(next_++)))
    {
        std::filesystem::remove_all(path_);
    }
    ~TempFolder() { std::filesystem::remove_all(path_); }
    const std::filesystem::path &path() const { return path_; }
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        if (std::filesystem::exists(path_)) {
            for (const auto &entry : std::filesystem::directory_iterator(path_))
                names.push_back(entry.path().filename().string());
        }
        return names;
    }

private:
    static inline int next_ = 0;
    std::filesystem::path path_;
};

const Location fixturePlace{"İstanbul", 41.0054, 28.9768, "Europe/Istanbul"};

std::vector<std::string> placeArgs()
{
    return {"--lat", "41.0054", "--lon", "28.9768", "--tz", "Europe/Istanbul", "--name", "İstanbul", "--method", "isna"};
}

std::vector<std::string> with(std::vector<std::string> args, const std::vector<std::string> &more)
{
    args.insert(args.end(), more.begin(), more.end());
    return args;
}

std::vector<Instant> timesOf(const json &day)
{
    std::vector<Instant> times;
    for (const json &time : day.at("times"))
        times.push_back(Instant{time.get<double>()});
    return times;
}

std::vector<Instant> timesOf(const DayTimes &day)
{
    return {day.times.begin(), day.times.end()};
}

} // namespace

TEST(CliOnline, serviceMonthIsShownAndCachedOnce)
{
    AprilService service;
    TempFolder cache;
    const std::vector<DayTimes> april = AladhanClient::parse(service.body(), *TimeZone::known("Europe/Istanbul"));
    ASSERT_EQ(april.size(), 30u);

    // A trailing slash on the base address is harmless.
    const CliRun first = runCli(with({"times", "--json", "--date", "2017-04-10", "--days", "2", "--service",
                                      service.url("/v1/"), "--cache", cache.path().string()},
                                     placeArgs()));
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.err, "");
    const json document = json::parse(first.out);
    EXPECT_EQ(document.at("source"), "online");
    ASSERT_EQ(document.at("days").size(), 2u);
    EXPECT_EQ(timesOf(document["days"][0]), timesOf(april[9]));
    EXPECT_EQ(timesOf(document["days"][1]), timesOf(april[10]));
    EXPECT_EQ(document["days"][0]["clock"][0], "04:44");
    EXPECT_EQ(service.hits("/v1/calendar/2017/4"), 1);
    EXPECT_EQ(service.lastQuery("method"), "2");
    EXPECT_EQ(service.lastQuery("timezonestring"), "Europe/Istanbul");
    EXPECT_EQ(cache.files(), std::vector<std::string>{PrayerRepository::cacheFileName({2017, 4}, fixturePlace, CalculationMethod::isna)});

    // The next run reads the cache file and leaves the service alone.
    const CliRun second = runCli(with({"times", "--date", "2017-04-10", "--service", service.url(), "--cache",
                                       cache.path().string()},
                                      placeArgs()));
    ASSERT_EQ(second.status, 0) << second.err;
    EXPECT_EQ(second.err, "");
    EXPECT_EQ(service.hits("/v1/calendar/2017/4"), 1);
    const std::vector<std::string> text = lines(second.out);
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.back(), "Kaynak: çevrimiçi");
    EXPECT_NE(second.out.find("04:44"), std::string::npos) << second.out;

    const CliRun status = runCli(with({"status", "--format", "json", "--now", "2017-04-10T12:00", "--service",
                                       service.url(), "--cache", cache.path().string()},
                                      placeArgs()));
    ASSERT_EQ(status.status, 0) << status.err;
    EXPECT_EQ(json::parse(status.out).at("source"), "online");
    EXPECT_EQ(service.hits("/v1/calendar/2017/4"), 1);
}

TEST(CliOnline, daysAcrossMonthsFetchEachMonthOnce)
{
    AprilService service;
    TempFolder cache;
    // All of April and the 1st of May: April comes from the service in one request, May fails
    // (404) and is computed, which makes the whole answer offline.
    const CliRun run = runCli(with({"times", "--json", "--date", "2017-04-01", "--days", "31", "--service",
                                    service.url(), "--cache", cache.path().string()},
                                   placeArgs()));
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(service.hits("/v1/calendar/2017/4"), 1);
    EXPECT_EQ(service.hits("/v1/calendar/2017/5"), 1);
    const json document = json::parse(run.out);
    EXPECT_EQ(document.at("source"), "offline");
    ASSERT_EQ(document.at("days").size(), 31u);
    EXPECT_EQ(document["days"][9]["clock"][0], "04:44");
    EXPECT_EQ(timesOf(document["days"][30]), timesOf(PrayerCalculator::times({2017, 5, 1}, fixturePlace, CalculationMethod::isna)));
    EXPECT_EQ(cache.files().size(), 1u);
}

TEST(CliOnline, failingServiceFallsBackToTheCalculator)
{
    AprilService service;
    const test::IdlePort dead(test::IdlePort::Connections::refused);
    TempFolder cache;
    const DayTimes computed = PrayerCalculator::times({2017, 4, 10}, fixturePlace, CalculationMethod::isna);

    for (const std::string &url : {dead.url(), service.url("/broken")}) {
        SCOPED_TRACE(url);
        const CliRun jsonRun = runCli(with({"times", "--json", "--date", "2017-04-10", "--service", url, "--cache",
                                         cache.path().string()},
                                        placeArgs()));
        ASSERT_EQ(jsonRun.status, 0) << jsonRun.err;
        EXPECT_EQ(jsonRun.err, "");
        const json document = json::parse(jsonRun.out);
        EXPECT_EQ(document.at("source"), "offline");
        EXPECT_EQ(timesOf(document["days"][0]), timesOf(computed));

        const CliRun textRun = runCli(with({"times", "--date", "2017-04-10", "--service", url, "--cache",
                                         cache.path().string()},
                                        placeArgs()));
        ASSERT_EQ(textRun.status, 0) << textRun.err;
        EXPECT_EQ(lines(textRun.out).back(), "Kaynak: çevrimdışı · cihazda hesaplandı");
        EXPECT_EQ(textRun.err, "orvel-cli: web servisinden vakit alınamadı; vakitler cihazda hesaplandı\n");

        const CliRun statusRun = runCli(with({"status", "--now", "2017-04-10T12:00", "--service", url, "--cache",
                                           cache.path().string()},
                                          placeArgs()));
        EXPECT_EQ(statusRun.status, 0);
        EXPECT_EQ(lines(statusRun.out).size(), 2u) << statusRun.out;
        EXPECT_EQ(std::count(statusRun.err.begin(), statusRun.err.end(), '\n'), 1) << statusRun.err;
    }
    EXPECT_EQ(service.hits("/broken/"), 3);
    EXPECT_TRUE(cache.files().empty());
}

TEST(CliOnline, libcurlLoadsOnlyWhenAMonthIsFetched)
{
    // What the dynamic loader maps at start-up, as ldd lists it. A libcurl function that LazyCurl
    // does not define would bring the library, and its thirty dependencies, back into every start.
    FILE *pipe = popen("LD_TRACE_LOADED_OBJECTS=1 '" ORVEL_CLI_PATH "'", "r");
    ASSERT_NE(pipe, nullptr);
    std::string loaded;
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        loaded.append(buffer, n);
    pclose(pipe);
    EXPECT_NE(loaded.find("libicuuc"), std::string::npos) << loaded;
    EXPECT_EQ(loaded.find("libcurl"), std::string::npos) << loaded;
}
