#include "Calendars.h"
#include "LoopbackService.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <future>
#include <map>
#include <set>
#include <sys/stat.h>

using namespace orvel;
using namespace orvel::test;
using nlohmann::json;
namespace fs = std::filesystem;

namespace {

constexpr CalculationMethod diyanet = CalculationMethod::diyanet;

Instant utc(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute)
{
    return Instant::fromUnix(static_cast<double>(Calendars::daysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60));
}

// The service's İmsak in Istanbul (+03) is always 04:44, far from the calculator's.
Instant serviceImsak(const DayKey &day)
{
    return utc(day.year, day.month, day.day, 1, 44);
}

std::string monthBody(MonthKey month, int dayCount)
{
    json days = json::array();
    for (int day = 1; day <= dayCount; ++day) {
        const std::string text = std::to_string(day);
        days.push_back({{"timings", {{"Fajr", "04:44 (+03)"}, {"Sunrise", "06:06 (+03)"}, {"Dhuhr", "12:12 (+03)"},
                                     {"Asr", "15:15 (+03)"}, {"Maghrib", "18:18 (+03)"}, {"Isha", "20:20 (+03)"}}},
                        {"date", {{"gregorian", {{"day", text}, {"month", {{"number", month.month}}}, {"year", std::to_string(month.year)}}},
                                  {"hijri", {{"day", text}, {"month", {{"number", 5}}}, {"year", "1448"}}}}}});
    }
    return json{{"code", 200}, {"status", "OK"}, {"data", days}}.dump();
}

std::vector<DayTimes> serviceMonth(MonthKey month)
{
    std::vector<DayTimes> days;
    for (const DayKey &day : month.days()) {
        DayTimes times{day, {}, HijriDate{day.day, 5, 1448}};
        for (size_t i = 0; i < 6; ++i)
            times.times[i] = serviceImsak(day) + static_cast<double>(i) * 3600;
        days.push_back(times);
    }
    return days;
}

size_t daysInFile(const fs::path &path)
{
    std::ifstream file(path);
    return json::parse(file).size();
}

std::vector<std::string> filesIn(const fs::path &folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(folder, error))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

fs::path makeTemporaryFolder()
{
    std::string pattern = (fs::temp_directory_path() / "orvel-repository-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary folder");
    return pattern;
}

void makeWritable(const fs::path &folder)
{
    std::error_code error;
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, error);
    for (auto it = fs::recursive_directory_iterator(folder, error); it != fs::recursive_directory_iterator(); it.increment(error))
        fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, error);
}

bool waitUntil(const std::function<bool()> &condition)
{
    for (int i = 0; i < 10000; ++i) {
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

const std::string november = PrayerRepository::cacheFileName({2026, 11}, Location::istanbul(), diyanet);
const std::string december = PrayerRepository::cacheFileName({2026, 12}, Location::istanbul(), diyanet);

} // namespace

// The repository against the web client and a loopback service that answers every month, except
// those a test makes fail, answer nothing or answer only a few days.
class PrayerRepositoryTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder = makeTemporaryFolder() / "Orvel" / "Cache";
        service.start();
        service.respond([this](const httplib::Request &request, httplib::Response &response) {
            const MonthKey month{std::stoll(request.path.substr(13, 4)), std::stoll(request.path.substr(18))};
            const std::lock_guard lock(mutex);
            if (failing.contains(month.description())) {
                response.status = 500;
                return;
            }
            const auto shortened = dayCounts.find(month.description());
            // Left uncompressed: the test server's compression costs a tenth of a second per answer.
            response.set_content(monthBody(month, shortened != dayCounts.end() ? shortened->second : month.dayCount()),
                                 "application/octet-stream");
        });
    }

    void TearDown() override
    {
        service.stop();
        const fs::path root = folder.parent_path().parent_path();
        makeWritable(root);
        fs::remove_all(root);
    }

    std::unique_ptr<PrayerRepository> repository(const fs::path &where = {}) const
    {
        return std::make_unique<PrayerRepository>(where.empty() ? folder : where, AladhanClient(service.url()));
    }

    size_t hits(MonthKey month) const
    {
        const std::string path = "/v1/calendar/" + std::to_string(month.year) + "/" + std::to_string(month.month);
        const auto paths = service.paths();
        return static_cast<size_t>(std::count(paths.begin(), paths.end(), path));
    }

    void fail(MonthKey month)
    {
        const std::lock_guard lock(mutex);
        failing.insert(month.description());
    }

    void answerDays(MonthKey month, int count)
    {
        const std::lock_guard lock(mutex);
        dayCounts[month.description()] = count;
    }

    fs::path folder;
    LoopbackService service;
    std::mutex mutex;
    std::set<std::string> failing;
    std::map<std::string, int> dayCounts;
};

TEST_F(PrayerRepositoryTest, monthsAreFetchedOnceAndKept)
{
    const auto first = repository();
    const DayKey lastOfNovember{2026, 11, 30};
    const DayKey firstOfDecember{2026, 12, 1};

    // Keys in reverse order: the months are still asked earlier first, the answer follows the keys.
    const auto answer = first->days({firstOfDecember, lastOfNovember, firstOfDecember}, Location::istanbul(), diyanet);
    EXPECT_EQ(service.paths(), (std::vector<std::string>{"/v1/calendar/2026/11", "/v1/calendar/2026/12"}));
    EXPECT_EQ(answer.source, TimesSource::online);
    ASSERT_EQ(answer.days.size(), 3u);
    EXPECT_EQ(answer.days[0].day, firstOfDecember);
    EXPECT_EQ(answer.days[1].day, lastOfNovember);
    EXPECT_EQ(answer.days[2], answer.days[0]);
    EXPECT_EQ(answer.days[1][Prayer::imsak], serviceImsak(lastOfNovember));
    EXPECT_EQ(answer.days[0].hijri, (HijriDate{1, 5, 1448}));

    // Files of the whole months, written completely, nothing left over.
    EXPECT_EQ(filesIn(folder), (std::vector<std::string>{november, december}));
    EXPECT_EQ(daysInFile(folder / november), 30u);
    EXPECT_EQ(daysInFile(folder / december), 31u);

    // From memory, then from the file in a second repository: no further request.
    EXPECT_EQ(first->days({lastOfNovember}, Location::istanbul(), diyanet).days, std::vector<DayTimes>{answer.days[1]});
    const auto second = repository();
    const auto fromDisk = second->days({{2026, 11, 15}, firstOfDecember}, Location::istanbul(), diyanet);
    EXPECT_EQ(fromDisk.source, TimesSource::online);
    EXPECT_EQ(fromDisk.days[0][Prayer::imsak], serviceImsak({2026, 11, 15}));
    EXPECT_EQ(fromDisk.days[1], answer.days[0]);
    second->prefetch({2026, 12}, Location::istanbul(), diyanet);
    EXPECT_EQ(service.requests().size(), 2u);

    // The same point in another zone, or under another method, is another file.
    Location elsewhere = Location::istanbul();
    elsewhere.timeZoneID = "Asia/Istanbul";
    second->days({lastOfNovember}, elsewhere, diyanet);
    second->days({lastOfNovember}, Location::istanbul(), CalculationMethod::mwl);
    EXPECT_EQ(hits({2026, 11}), 3u);
    EXPECT_EQ(filesIn(folder).size(), 4u);
}

TEST_F(PrayerRepositoryTest, cacheFilesThatDoNotFitAreFetchedAgain)
{
    repository()->days({{2026, 11, 10}}, Location::istanbul(), diyanet);
    ASSERT_EQ(hits({2026, 11}), 1u);

    const auto rewrite = [&](const std::function<void(json &)> &change) {
        std::ifstream in(folder / november);
        json days = json::parse(in);
        in.close();
        change(days);
        std::ofstream(folder / november) << days.dump();
    };
    const std::vector<std::function<void(json &)>> spoilers{
        [](json &days) { days.erase(days.size() - 1); },                   // 29 days for a 30-day month
        [](json &days) { days.push_back(days[0]); },                        // 31
        [](json &days) { days[3]["times"].erase(5); },                      // a day with five times
        [](json &days) { days = json::parse("\"not a month\""); },
    };
    size_t expectedHits = 1;
    for (const auto &spoil : spoilers) {
        rewrite(spoil);
        const auto answer = repository()->days({{2026, 11, 10}}, Location::istanbul(), diyanet);
        EXPECT_EQ(hits({2026, 11}), ++expectedHits);
        EXPECT_EQ(answer.source, TimesSource::online);
        EXPECT_EQ(answer.days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 10}));
        EXPECT_EQ(daysInFile(folder / november), 30u) << "the file is replaced";
    }
    std::ofstream(folder / november) << "{\"truncated";
    repository()->days({{2026, 11, 10}}, Location::istanbul(), diyanet);
    EXPECT_EQ(hits({2026, 11}), ++expectedHits);
    EXPECT_EQ(daysInFile(folder / november), 30u);
}

TEST_F(PrayerRepositoryTest, failuresOfTheServiceAreCalculated)
{
    const auto repo = repository();
    const Location place = Location::istanbul();

    fail({2026, 12});
    const auto mixed = repo->days({{2026, 11, 30}, {2026, 12, 1}, {2026, 12, 2}}, place, diyanet);
    EXPECT_EQ(mixed.source, TimesSource::offline);
    ASSERT_EQ(mixed.days.size(), 3u);
    EXPECT_EQ(mixed.days[0][Prayer::imsak], serviceImsak({2026, 11, 30}));
    EXPECT_EQ(mixed.days[1], PrayerCalculator::times({2026, 12, 1}, place, diyanet));
    EXPECT_EQ(mixed.days[2], PrayerCalculator::times({2026, 12, 2}, place, diyanet));
    EXPECT_NE(mixed.days[1][Prayer::imsak], serviceImsak({2026, 12, 1}));
    EXPECT_EQ(filesIn(folder), std::vector<std::string>{november});
    // A failure is not remembered: the next request asks again.
    repo->days({{2026, 12, 1}}, place, diyanet);
    EXPECT_EQ(hits({2026, 12}), 2u);

    // An empty month is a failure too, and nothing of it is kept.
    answerDays({2027, 1}, 0);
    const auto empty = repo->days({{2027, 1, 5}}, place, diyanet);
    EXPECT_EQ(empty.source, TimesSource::offline);
    EXPECT_EQ(empty.days, std::vector<DayTimes>{PrayerCalculator::times({2027, 1, 5}, place, diyanet)});
    repo->prefetch({2027, 1}, place, diyanet);
    repo->prefetch({2026, 12}, place, diyanet);
    EXPECT_EQ(filesIn(folder), std::vector<std::string>{november});
    repo->days({{2027, 1, 5}}, place, diyanet);
    EXPECT_EQ(hits({2027, 1}), 3u);

    // A month the service gives only in part is kept; the missing days are calculated and the
    // answer stays online.
    answerDays({2027, 2}, 10);
    const auto partial = repo->days({{2027, 2, 5}, {2027, 2, 20}}, place, diyanet);
    EXPECT_EQ(partial.source, TimesSource::online);
    EXPECT_EQ(partial.days[0][Prayer::imsak], serviceImsak({2027, 2, 5}));
    EXPECT_EQ(partial.days[1], PrayerCalculator::times({2027, 2, 20}, place, diyanet));
    repo->days({{2027, 2, 6}}, place, diyanet);
    EXPECT_EQ(hits({2027, 2}), 1u);

    // A prefetched month is then served without a request.
    repo->prefetch({2027, 3}, place, diyanet);
    EXPECT_EQ(hits({2027, 3}), 1u);
    EXPECT_EQ(daysInFile(folder / PrayerRepository::cacheFileName({2027, 3}, place, diyanet)), 31u);
    EXPECT_EQ(repo->days({{2027, 3, 3}}, place, diyanet).source, TimesSource::online);
    EXPECT_EQ(hits({2027, 3}), 1u);

    // No service at all.
    service.stop();
    const auto unreachable = repo->days({{2027, 4, 1}, {2026, 11, 2}}, place, diyanet);
    EXPECT_EQ(unreachable.source, TimesSource::offline);
    EXPECT_EQ(unreachable.days[0], PrayerCalculator::times({2027, 4, 1}, place, diyanet));
    EXPECT_EQ(unreachable.days[1][Prayer::imsak], serviceImsak({2026, 11, 2}));
}

TEST_F(PrayerRepositoryTest, clearForgetsMemoryAndFiles)
{
    const auto repo = repository();
    repo->days({{2026, 11, 1}}, Location::istanbul(), diyanet);
    repo->clear();
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(repo->days({{2026, 11, 1}}, Location::istanbul(), diyanet).source, TimesSource::online);
    EXPECT_EQ(hits({2026, 11}), 2u);
    EXPECT_EQ(filesIn(folder), std::vector<std::string>{november});
}

TEST_F(PrayerRepositoryTest, aFolderThatCannotBeMadeKeepsMonthsInMemory)
{
    // The folder's parent is a file.
    std::ofstream(folder.parent_path().parent_path() / "plain-file") << "x";
    const auto homeless = repository(folder.parent_path().parent_path() / "plain-file" / "Cache");
    EXPECT_EQ(homeless->days({{2026, 11, 3}}, Location::istanbul(), diyanet).days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 3}));
    homeless->days({{2026, 11, 4}}, Location::istanbul(), diyanet);
    EXPECT_EQ(hits({2026, 11}), 1u);
    homeless->clear();
    EXPECT_EQ(homeless->days({{2026, 11, 4}}, Location::istanbul(), diyanet).source, TimesSource::online);
    EXPECT_EQ(hits({2026, 11}), 2u);
}

TEST_F(PrayerRepositoryTest, unreadableFilesAndReadOnlyFoldersAreSilent)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not stop root";
    // An unreadable file is fetched again; a read-only folder keeps the month in memory.
    repository()->days({{2026, 11, 3}}, Location::istanbul(), diyanet);
    fs::permissions(folder / november, fs::perms::none);
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    const auto locked = repository();
    EXPECT_EQ(locked->days({{2026, 11, 3}}, Location::istanbul(), diyanet).days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 3}));
    EXPECT_EQ(hits({2026, 11}), 2u);
    const auto answer = locked->days({{2026, 12, 3}, {2026, 11, 4}}, Location::istanbul(), diyanet);
    EXPECT_EQ(answer.source, TimesSource::online);
    EXPECT_EQ(answer.days.at(0)[Prayer::imsak], serviceImsak({2026, 12, 3}));
    EXPECT_EQ(hits({2026, 11}), 2u);
    EXPECT_EQ(filesIn(folder), std::vector<std::string>{november});
}

TEST(PrayerRepositoryNames, fileNamesAndDefaultFolder)
{
    EXPECT_EQ(november, "diyanet_41.008_28.978_Europe-Istanbul_2026-11.json");
    const Location buenosAires{"Buenos Aires", -34.60372, -58.38159, "America/Argentina/Buenos_Aires"};
    EXPECT_EQ(PrayerRepository::cacheFileName({2027, 1}, buenosAires, CalculationMethod::ummAlQura),
              "ummAlQura_-34.604_-58.382_America-Argentina-Buenos_Aires_2027-01.json");

    const char *savedData = std::getenv("XDG_DATA_HOME");
    const std::string saved = savedData ? savedData : "";
    const char *home = std::getenv("HOME");
    ASSERT_NE(home, nullptr);
    setenv("XDG_DATA_HOME", "/srv/data", 1);
    EXPECT_EQ(PrayerRepository::defaultCacheDirectory(), fs::path("/srv/data/Orvel/Cache"));
    setenv("XDG_DATA_HOME", "relative/data", 1);
    EXPECT_EQ(PrayerRepository::defaultCacheDirectory(), fs::path(home) / ".local/share/Orvel/Cache");
    unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(PrayerRepository::defaultCacheDirectory(), fs::path(home) / ".local/share/Orvel/Cache");
    if (savedData)
        setenv("XDG_DATA_HOME", saved.c_str(), 1);
}

TEST(PrayerRepositoryThreads, aSlowFetchHoldsNobodyUp)
{
    const fs::path root = makeTemporaryFolder();
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    std::atomic<int> novemberFetches = 0;
    PrayerRepository repo(root / "Cache", [&](MonthKey month, const Location &, CalculationMethod) {
        if (month == MonthKey{2026, 11}) {
            ++novemberFetches;
            released.wait();
        }
        return serviceMonth(month);
    });
    repo.prefetch({2026, 12}, Location::istanbul(), diyanet);

    std::future<PrayerRepository::Answer> first, cached, second;
    // Let a stuck fetch go on every way out, so that a failed assertion cannot hang the test.
    const std::unique_ptr<std::promise<void>, void (*)(std::promise<void> *)> gate(&release, [](std::promise<void> *p) {
        try {
            p->set_value();
        } catch (const std::future_error &) {
        }
    });

    const auto ask = [&](DayKey day) { return std::async(std::launch::async, [&repo, day] { return repo.days({day}, Location::istanbul(), diyanet); }); };
    first = ask({2026, 11, 10});
    ASSERT_TRUE(waitUntil([&] { return novemberFetches == 1; }));
    // While the first caller waits for the network, a cached month is answered and a second
    // caller for the same month fetches it too.
    cached = ask({2026, 12, 5});
    second = ask({2026, 11, 11});
    ASSERT_EQ(cached.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_EQ(cached.get().days.at(0)[Prayer::imsak], serviceImsak({2026, 12, 5}));
    EXPECT_TRUE(waitUntil([&] { return novemberFetches == 2; }));

    release.set_value();
    const auto a = first.get();
    const auto b = second.get();
    EXPECT_EQ(a.source, TimesSource::online);
    EXPECT_EQ(b.source, TimesSource::online);
    EXPECT_EQ(a.days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 10}));
    EXPECT_EQ(b.days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 11}));
    EXPECT_EQ(filesIn(root / "Cache"), (std::vector<std::string>{november, december}));
    EXPECT_EQ(daysInFile(root / "Cache" / november), 30u);
    fs::remove_all(root);
}
