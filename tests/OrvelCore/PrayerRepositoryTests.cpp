#include "LoopbackService.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <map>
#include <set>

using namespace orvel;
using namespace orvel::test;
using nlohmann::json;
namespace fs = std::filesystem;

namespace {

// A method the service answers for (Diyanet's own rule never asks it).
constexpr CalculationMethod serviceMethod = CalculationMethod::mwl;
const Location place = Location::istanbul();

// The service's İmsak in Istanbul (+03) is always 04:44, far from the calculator's.
Instant serviceImsak(const DayKey &day) { return day.start(place.timeZone()) + (4 * 60 + 44) * 60; }

json monthDays(MonthKey month, int dayCount)
{
    json days = json::array();
    for (int day = 1; day <= dayCount; ++day) {
        const std::string text = std::to_string(day);
        days.push_back({{"timings", {{"Fajr", "04:44 (+03)"}, {"Sunrise", "06:06 (+03)"}, {"Dhuhr", "12:12 (+03)"},
                                     {"Asr", "15:15 (+03)"}, {"Maghrib", "18:18 (+03)"}, {"Isha", "20:20 (+03)"}}},
                        {"date", {{"gregorian", {{"day", text}, {"month", {{"number", month.month}}}, {"year", std::to_string(month.year)}}},
                                  {"hijri", {{"day", std::to_string((day - 1) % 30 + 1)}, {"month", {{"number", 5}}}, {"year", "1448"}}}}}});
    }
    return days;
}

size_t daysInFile(const fs::path &path) { return json::parse(std::ifstream(path)).size(); }

std::set<std::string> filesIn(const fs::path &folder)
{
    std::set<std::string> names;
    for (const auto &entry : fs::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

bool waitUntil(const std::function<bool()> &condition)
{
    for (int i = 0; i < 10000 && !condition(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return condition();
}

const std::string november = PrayerRepository::cacheFileName({2026, 11}, place, serviceMethod);
const std::string december = PrayerRepository::cacheFileName({2026, 12}, place, serviceMethod);

} // namespace

// The repository against the web client and a loopback service that answers every month, except
// those a test makes fail, shortens, or holds back until released.
class PrayerRepositoryTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::string root = (fs::temp_directory_path() / "orvel-repository-XXXXXX").string();
        ASSERT_NE(mkdtemp(root.data()), nullptr);
        folder = fs::path(root) / "Orvel" / "Cache";
        service.start();
        service.respond([this](const httplib::Request &request, httplib::Response &response) {
            const MonthKey month{std::stoll(request.path.substr(13, 4)), std::stoll(request.path.substr(18))};
            std::unique_lock lock(mutex);
            released.wait(lock, [&] { return !held || *held != month; });
            const auto count = dayCounts.find(month.description());
            if (count != dayCounts.end() && count->second < 0)
                response.status = 500;
            else { // uncompressed: the test server's compression costs a tenth of a second per answer
                json days = monthDays(month, count != dayCounts.end() ? count->second : month.dayCount());
                if (const auto spoil = spoilers.find(month.description()); spoil != spoilers.end())
                    spoil->second(days);
                response.set_content(json{{"code", 200}, {"data", days}}.dump(), "application/octet-stream");
            }
        });
    }

    void TearDown() override
    {
        hold(std::nullopt);
        service.stop();
        std::error_code error;
        fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, error);
        fs::remove_all(folder.parent_path().parent_path());
    }

    std::unique_ptr<PrayerRepository> repository(const fs::path &where = {}) const
    {
        return std::make_unique<PrayerRepository>(where.empty() ? folder : where, AladhanClient(service.url()));
    }

    size_t hits(MonthKey month) const
    {
        return static_cast<size_t>(std::ranges::count(service.paths(), "/v1/calendar/" + std::to_string(month.year) + "/" + std::to_string(month.month)));
    }

    // A negative count makes the month fail with HTTP 500.
    void answerDays(MonthKey month, int count)
    {
        const std::lock_guard lock(mutex);
        dayCounts[month.description()] = count;
    }

    void hold(std::optional<MonthKey> month)
    {
        const std::lock_guard lock(mutex);
        held = month;
        released.notify_all();
    }

    fs::path folder;
    LoopbackService service;
    std::mutex mutex;
    std::condition_variable released;
    std::optional<MonthKey> held;
    std::map<std::string, int> dayCounts;
    std::map<std::string, std::function<void(json &)>> spoilers;
};

TEST_F(PrayerRepositoryTest, monthsAreFetchedOnceAndKept)
{
    const auto first = repository();
    const DayKey lastOfNovember{2026, 11, 30}, firstOfDecember{2026, 12, 1};

    // Keys in reverse order: the months are still asked earlier first, the answer follows the keys.
    const auto answer = first->days({firstOfDecember, lastOfNovember, firstOfDecember}, place, serviceMethod);
    EXPECT_EQ(service.paths(), (std::vector<std::string>{"/v1/calendar/2026/11", "/v1/calendar/2026/12"}));
    EXPECT_EQ(answer.source, TimesSource::online);
    EXPECT_EQ(answer.days.at(2), answer.days.at(0));
    EXPECT_EQ(answer.days[1][Prayer::imsak], serviceImsak(lastOfNovember));

    // Files of the whole months, written completely, nothing left over.
    EXPECT_EQ(filesIn(folder), (std::set<std::string>{november, december}));
    EXPECT_EQ(daysInFile(folder / november), 30u);
    EXPECT_EQ(daysInFile(folder / december), 31u);

    // From memory, then from the file in a second repository: no further request.
    EXPECT_EQ(first->days({lastOfNovember}, place, serviceMethod).days, std::vector<DayTimes>{answer.days[1]});
    const auto second = repository();
    const auto fromDisk = second->days({{2026, 11, 15}, firstOfDecember}, place, serviceMethod);
    EXPECT_EQ(fromDisk.days[0][Prayer::imsak], serviceImsak({2026, 11, 15}));
    EXPECT_EQ(fromDisk.days[1], answer.days[0]);
    EXPECT_EQ(service.requests().size(), 2u);

    // The same point in another zone, or under another method, is another file.
    second->days({lastOfNovember}, {place.name, place.latitude, place.longitude, "Asia/Istanbul"}, serviceMethod);
    second->days({lastOfNovember}, place, CalculationMethod::isna);
    EXPECT_EQ(hits({2026, 11}), 3u);
    EXPECT_EQ(filesIn(folder).size(), 4u);

    // Clearing forgets memory and files alike.
    second->clear();
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(second->days({lastOfNovember}, place, serviceMethod).source, TimesSource::online);
    EXPECT_EQ(hits({2026, 11}), 4u);
}

TEST_F(PrayerRepositoryTest, cacheFilesThatDoNotFitAreFetchedAgain)
{
    repository()->days({{2026, 11, 10}}, place, serviceMethod);
    const std::function<std::string(json)> spoilers[] = {
        [](json days) { days.erase(days.size() - 1); return days.dump(); }, // 29 days for a 30-day month
        [](json days) { days[3]["times"].erase(5); return days.dump(); },   // a day with five times
        [](json) { return std::string("{\"truncated"); },
        [](json days) { days[0]["day"]["day"] = 1.7; return days.dump(); },       // not a whole day
        [](json days) { days[2]["hijri"]["year"] = 1446.5; return days.dump(); }, // nor a whole year
        [](json days) { days[4]["times"][2] = 1e308; return days.dump(); },        // no moment of that day
        [](json days) { days[1]["day"]["year"] = INT64_MAX; return days.dump(); }, // no date at all
        [](json days) { days[7]["hijri"]["month"] = INT64_MIN; return days.dump(); },
        [](json days) { std::swap(days[1], days[2]); return days.dump(); },        // out of order
        [](json days) { days[9]["day"]["month"] = 10; return days.dump(); },       // another month's day
    };
    size_t expectedHits = 1;
    for (const auto &spoil : spoilers) {
        const std::string spoiled = spoil(json::parse(std::ifstream(folder / november)));
        std::ofstream(folder / november) << spoiled;
        const auto answer = repository()->days({{2026, 11, 10}}, place, serviceMethod);
        EXPECT_EQ(hits({2026, 11}), ++expectedHits);
        EXPECT_EQ(answer.source, TimesSource::online);
        EXPECT_EQ(answer.days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 10}));
        EXPECT_EQ(daysInFile(folder / november), 30u) << "the file is replaced";
    }
}

TEST_F(PrayerRepositoryTest, failuresOfTheServiceAreCalculated)
{
    const auto repo = repository();
    answerDays({2026, 12}, -1);
    const auto mixed = repo->days({{2026, 11, 30}, {2026, 12, 1}, {2026, 12, 2}}, place, serviceMethod);
    EXPECT_EQ(mixed.source, TimesSource::offline);
    EXPECT_EQ(mixed.days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 30}));
    EXPECT_EQ(mixed.days.at(2), PrayerCalculator::times({2026, 12, 2}, place, serviceMethod));
    EXPECT_EQ(filesIn(folder), std::set<std::string>{november});
    // A failure is not remembered: the next request asks again.
    repo->days({{2026, 12, 1}}, place, serviceMethod);
    EXPECT_EQ(hits({2026, 12}), 2u);

    // An empty month is a failure too, and nothing of it is kept.
    answerDays({2027, 1}, 0);
    const auto empty = repo->days({{2027, 1, 5}}, place, serviceMethod);
    EXPECT_EQ(empty.source, TimesSource::offline);
    EXPECT_EQ(empty.days, std::vector<DayTimes>{PrayerCalculator::times({2027, 1, 5}, place, serviceMethod)});
    EXPECT_EQ(filesIn(folder), std::set<std::string>{november});

    // A month given only in part, or with days that are not the month's or not possible, is a
    // bad answer like any failure: calculated, kept nowhere, asked for again.
    const std::pair<const char *, std::function<void(json &)>> faults[] = {
        {"20 of 28 days", [](json &days) { days.erase(days.begin() + 20, days.end()); }},
        {"another year", [](json &days) { for (json &day : days) day["date"]["gregorian"]["year"] = "2018"; }},
        {"day 1 again and again", [](json &days) { for (json &day : days) day["date"]["gregorian"]["day"] = "1"; }},
        {"25:99", [](json &days) { days[3]["timings"]["Asr"] = "25:99 (+03)"; }},
        {"24:00", [](json &days) { days[3]["timings"]["Asr"] = "24:00 (+03)"; }},
        {"Isha before Fajr", [](json &days) { days[4]["timings"]["Isha"] = "03:10 (+03)"; }},
        {"a Hijri month of its own", [](json &days) { days[5]["date"]["hijri"]["month"]["number"] = -9223372036854775807LL - 1; }},
    };
    size_t asked = 0;
    for (const auto &[fault, spoil] : faults) {
        SCOPED_TRACE(fault);
        spoilers["2027-02"] = spoil;
        const auto bad = repo->days({{2027, 2, 5}, {2027, 2, 20}}, place, serviceMethod);
        EXPECT_EQ(bad.source, TimesSource::offline);
        EXPECT_EQ(bad.days[0], PrayerCalculator::times({2027, 2, 5}, place, serviceMethod));
        EXPECT_EQ(hits({2027, 2}), ++asked);
        EXPECT_FALSE(fs::exists(folder / PrayerRepository::cacheFileName({2027, 2}, place, serviceMethod)));
    }
    // The right answer is taken at the next request.
    spoilers.erase("2027-02");
    EXPECT_EQ(repo->days({{2027, 2, 5}}, place, serviceMethod).source, TimesSource::online);

    // No service at all: what was cached stays online data, the rest is calculated.
    service.stop();
    const auto unreachable = repo->days({{2027, 4, 1}, {2026, 11, 2}}, place, serviceMethod);
    EXPECT_EQ(unreachable.source, TimesSource::offline);
    EXPECT_EQ(unreachable.days[0], PrayerCalculator::times({2027, 4, 1}, place, serviceMethod));
    EXPECT_EQ(unreachable.days[1][Prayer::imsak], serviceImsak({2026, 11, 2}));
}

TEST_F(PrayerRepositoryTest, foldersThatCannotBeWrittenKeepMonthsInMemory)
{
    // A folder whose parent is a file cannot be made.
    const fs::path plainFile = folder.parent_path().parent_path() / "plain-file";
    std::ofstream(plainFile) << "x";
    const auto homeless = repository(plainFile / "Cache");
    EXPECT_EQ(homeless->days({{2026, 11, 3}}, place, serviceMethod).days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 3}));
    homeless->days({{2026, 11, 4}}, place, serviceMethod);
    EXPECT_EQ(hits({2026, 11}), 1u);

    // A month file that cannot be read (a folder in its place stops root too) is fetched again
    // and the month is kept in memory, since it cannot be written over either.
    repository()->days({{2026, 11, 3}}, place, serviceMethod);
    fs::remove(folder / november);
    fs::create_directory(folder / november);
    const auto blocked = repository();
    EXPECT_EQ(blocked->days({{2026, 11, 3}}, place, serviceMethod).source, TimesSource::online);
    blocked->days({{2026, 11, 4}}, place, serviceMethod);
    EXPECT_EQ(hits({2026, 11}), 3u);
    EXPECT_TRUE(fs::is_directory(folder / november));

    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not stop root";
    // A read-only folder keeps new months in memory.
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    const auto locked = repository();
    const auto answer = locked->days({{2026, 12, 3}, {2026, 12, 4}}, place, serviceMethod);
    EXPECT_EQ(answer.source, TimesSource::online);
    EXPECT_EQ(answer.days.at(1)[Prayer::imsak], serviceImsak({2026, 12, 4}));
    EXPECT_EQ(hits({2026, 12}), 1u);
    EXPECT_EQ(filesIn(folder), std::set<std::string>{november});
}

TEST_F(PrayerRepositoryTest, aSlowFetchHoldsNobodyUp)
{
    const auto repo = repository();
    repo->prefetch({2026, 12}, place, serviceMethod);
    hold(MonthKey{2026, 11});
    const auto ask = [&](DayKey day) { return std::async(std::launch::async, [&repo, day] { return repo->days({day}, place, serviceMethod); }); };
    auto first = ask({2026, 11, 10});
    ASSERT_TRUE(waitUntil([&] { return hits({2026, 11}) == 1; }));
    // While the first caller waits for the network, a cached month is answered and a second
    // caller for the same month fetches it too.
    auto cached = ask({2026, 12, 5});
    auto second = ask({2026, 11, 11});
    ASSERT_EQ(cached.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_EQ(cached.get().days.at(0)[Prayer::imsak], serviceImsak({2026, 12, 5}));
    EXPECT_EQ(hits({2026, 12}), 1u);
    EXPECT_TRUE(waitUntil([&] { return hits({2026, 11}) == 2; }));

    hold(std::nullopt);
    EXPECT_EQ(first.get().days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 10}));
    EXPECT_EQ(second.get().days.at(0)[Prayer::imsak], serviceImsak({2026, 11, 11}));
    EXPECT_EQ(filesIn(folder), (std::set<std::string>{november, december}));
    EXPECT_EQ(daysInFile(folder / november), 30u);
}

TEST_F(PrayerRepositoryTest, diyanetIsItsOwnRuleAndNeverAsksTheService)
{
    const auto answer = repository()->days({{2026, 11, 10}, {2026, 11, 11}}, place, CalculationMethod::diyanet);
    EXPECT_EQ(answer.source, TimesSource::rule);
    EXPECT_EQ(answer.days.at(0), PrayerCalculator::times({2026, 11, 10}, place, CalculationMethod::diyanet));
    repository()->prefetch({2026, 12}, place, CalculationMethod::diyanet);
    EXPECT_TRUE(service.requests().empty());
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(PrayerRepositoryTest, theUsersOptionsShapeTheAnswerButNotTheCache)
{
    TimesOptions options;
    options.minuteAdjustments = {-2, 0, 0, 0, 3, 0};
    const auto repo = repository();
    const auto adjusted = repo->days({{2026, 11, 10}}, place, serviceMethod, options).days.at(0);
    EXPECT_EQ(adjusted[Prayer::imsak], serviceImsak({2026, 11, 10}) - 120);
    EXPECT_EQ(adjusted[Prayer::aksam] - repo->days({{2026, 11, 10}}, place, serviceMethod).days.at(0)[Prayer::aksam], 180);
    EXPECT_EQ(hits({2026, 11}), 1u);
    const json file = json::parse(std::ifstream(folder / november));
    EXPECT_EQ(file.at(9).get<DayTimes>()[Prayer::imsak], serviceImsak({2026, 11, 10}));

    // Diyanet from the service when the user prefers it; its own rule again when that fails.
    options.diyanetFromService = true;
    EXPECT_EQ(repo->days({{2026, 11, 10}}, place, CalculationMethod::diyanet, options).source, TimesSource::online);
    answerDays({2026, 12}, -1);
    EXPECT_EQ(repo->days({{2026, 12, 10}}, place, CalculationMethod::diyanet, options).source, TimesSource::rule);
}

TEST_F(PrayerRepositoryTest, theHijriCorrectionCountsInTheMethodsCalendar)
{
    // Diyanet's Ramadan 1447 begins on 19 February 2026 and lasts 29 days.
    TimesOptions later;
    later.hijriCorrection = -1;
    const auto repo = repository();
    const auto days = repo->days({{2026, 2, 19}, {2026, 2, 20}, {2026, 3, 20}, {2026, 3, 21}}, place,
                                 CalculationMethod::diyanet, later).days;
    EXPECT_EQ(days.at(0).hijri->month, 8);
    EXPECT_EQ(*days.at(1).hijri, (HijriDate{1, 9, 1447}));
    EXPECT_EQ(*days.at(2).hijri, (HijriDate{29, 9, 1447}));
    EXPECT_EQ(*days.at(3).hijri, (HijriDate{1, 10, 1447}));
    TimesOptions earlier;
    earlier.hijriCorrection = 2;
    EXPECT_EQ(*repo->days({{2026, 2, 17}}, place, CalculationMethod::diyanet, earlier).days.at(0).hijri,
              (HijriDate{1, 9, 1447}));
}

TEST(TimesOptionsJson, readsBackAndRefusesWhatIsOutOfRange)
{
    TimesOptions options;
    options.highLatitude = HighLatitudeRule::middleOfNight;
    options.minuteAdjustments = {30, -30, 0, 1, 2, 3};
    options.hijriCorrection = -2;
    options.diyanetFromService = true;
    EXPECT_EQ(json(options).get<TimesOptions>(), options);
    for (const auto &[key, value] : std::vector<std::pair<std::string, json>>{
             {"adjustments", {31, 0, 0, 0, 0, 0}}, {"adjustments", {0, 0, 0}}, {"adjustments", {0.5, 0, 0, 0, 0, 0}},
             {"hijriCorrection", 3}, {"highLatitude", "polar"}, {"diyanetFromService", "yes"}}) {
        json damaged = options;
        damaged[key] = value;
        EXPECT_THROW(static_cast<void>(damaged.get<TimesOptions>()), json::exception) << key << " " << value;
    }
}

TEST(PrayerRepositoryNames, fileNamesAndDefaultFolder)
{
    EXPECT_EQ(november, "mwl_41.008_28.978_Europe-Istanbul_2026-11.json");
    EXPECT_EQ(PrayerRepository::cacheFileName({2027, 1}, {"", -34.60372, -58.38159, "America/Argentina/Buenos_Aires"}, CalculationMethod::ummAlQura),
              "ummAlQura_-34.604_-58.382_America-Argentina-Buenos_Aires_2027-01.json");

    const char *saved = std::getenv("XDG_DATA_HOME");
    const std::string savedData = saved ? saved : "";
    setenv("XDG_DATA_HOME", "/srv/data", 1);
    EXPECT_EQ(PrayerRepository::defaultCacheDirectory(), fs::path("/srv/data/Orvel/Cache"));
    // A relative XDG_DATA_HOME is ignored.
    setenv("XDG_DATA_HOME", "relative/data", 1);
    EXPECT_EQ(PrayerRepository::defaultCacheDirectory(), fs::path(std::getenv("HOME")) / ".local/share/Orvel/Cache");
    saved ? setenv("XDG_DATA_HOME", savedData.c_str(), 1) : unsetenv("XDG_DATA_HOME");
}
