#include "PrayerRepository.h"

#include "MonthCheck.h"
#include "PrayerCalculator.h"
#include "SafeFile.h"
#include "TimeZone.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <system_error>
#include <unordered_set>

#include <nlohmann/json.hpp>

#include <pwd.h>
#include <unistd.h>

namespace orvel {

namespace fs = std::filesystem;

namespace {

// A month file is a few kilobytes; a huge file in the folder is not ours and is not read.
constexpr std::uintmax_t maximumFileSize = 4 * 1024 * 1024;

fs::path homeDirectory()
{
    if (const char *home = std::getenv("HOME"); home && *home)
        return home;
    passwd entry{};
    passwd *found = nullptr;
    std::string buffer(16384, '\0');
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found && found->pw_dir)
        return found->pw_dir;
    return fs::current_path();
}

} // namespace

PrayerRepository::PrayerRepository(fs::path cacheDirectory, MonthFetch fetch)
    : cacheDirectory_(std::move(cacheDirectory))
    , fetch_(std::move(fetch))
{
}

PrayerRepository::PrayerRepository(fs::path cacheDirectory, AladhanClient client)
    : PrayerRepository(std::move(cacheDirectory), [client = std::move(client)](MonthKey month, const Location &location, CalculationMethod method) {
        return client.month(month, location, method);
    })
{
}

fs::path PrayerRepository::defaultCacheDirectory()
{
    const char *dataHome = std::getenv("XDG_DATA_HOME");
    const fs::path base = dataHome && fs::path(dataHome).is_absolute() ? fs::path(dataHome) : homeDirectory() / ".local" / "share";
    return base / "Orvel" / "Cache";
}

std::string PrayerRepository::cacheFileName(MonthKey month, const Location &location, CalculationMethod method)
{
    std::string zone = location.timeZoneID;
    std::replace(zone.begin(), zone.end(), '/', '-');
    std::string name(method.id());
    name += '_';
    name += location.cacheKey();
    name += '_';
    name += zone;
    name += '_';
    name += month.description();
    name += ".json";
    return name;
}

bool PrayerRepository::asksService(CalculationMethod method, const TimesOptions &options)
{
    // Diyanet's rule is Diyanet's own computation: the service is asked only when the user wants it.
    return method != CalculationMethod::diyanet || options.diyanetFromService;
}

PrayerRepository::Answer PrayerRepository::days(const std::vector<DayKey> &keys, const Location &location,
                                                 CalculationMethod method, const TimesOptions &options)
{
    Answer answer;
    std::optional<TimeZone> zone;
    const auto calculated = [&](const DayKey &day) {
        if (!zone)
            zone = location.timeZone();
        return PrayerCalculator::times(day, location, method, *zone, options.highLatitude);
    };
    const auto finish = [&](const std::vector<DayTimes> &days) {
        answer.days.reserve(days.size());
        for (const DayTimes &day : days)
            answer.days.push_back(options.applied(day, method));
        return answer;
    };

    if (!asksService(method, options)) {
        answer.source = method == CalculationMethod::diyanet ? TimesSource::rule : TimesSource::offline;
        std::vector<DayTimes> days;
        days.reserve(keys.size());
        for (const DayKey &key : keys)
            days.push_back(calculated(key));
        return finish(days);
    }

    std::set<MonthKey> months;
    for (const DayKey &key : keys)
        months.insert(key.monthKey());
    const std::unordered_set<DayKey> requested(keys.begin(), keys.end());

    std::unordered_map<DayKey, DayTimes> table;
    // One failed request is enough waiting for one answer: the rest is computed at once.
    bool serviceFailed = false;
    for (const MonthKey &month : months) {
        auto list = cached(month, location, method);
        if (!list && !serviceFailed) {
            list = fetchOnline(month, location, method);
            serviceFailed = !list;
        }
        if (list) {
            for (DayTimes &day : *list)
                table.insert_or_assign(day.day, std::move(day));
            continue;
        }
        answer.source = method == CalculationMethod::diyanet ? TimesSource::rule : TimesSource::offline;
        for (const DayKey &day : month.days()) {
            if (requested.contains(day))
                table.insert_or_assign(day, calculated(day));
        }
    }

    std::vector<DayTimes> days;
    days.reserve(keys.size());
    for (const DayKey &key : keys) {
        const auto found = table.find(key);
        days.push_back(found != table.end() ? found->second : calculated(key));
    }
    return finish(days);
}

void PrayerRepository::prefetch(MonthKey month, const Location &location, CalculationMethod method,
                                const TimesOptions &options)
{
    if (!asksService(method, options))
        return;
    if (!cached(month, location, method))
        fetchOnline(month, location, method);
}

void PrayerRepository::clear()
{
    const std::lock_guard lock(mutex_);
    memory_.clear();
    std::error_code error;
    fs::remove_all(cacheDirectory_, error);
}

std::optional<std::vector<DayTimes>> PrayerRepository::cached(MonthKey month, const Location &location, CalculationMethod method)
{
    const std::string name = cacheFileName(month, location, method);
    const std::lock_guard lock(mutex_);
    if (const auto found = memory_.find(name); found != memory_.end())
        return found->second;
    if (cacheDirectory_.empty())
        return std::nullopt;

    const auto text = SafeFile::read(cacheDirectory_ / name, maximumFileSize);
    if (!text)
        return std::nullopt;
    std::vector<DayTimes> days;
    try {
        days = nlohmann::json::parse(*text).get<std::vector<DayTimes>>();
    } catch (const std::exception &) {
        return std::nullopt;
    }
    // A file that is not the whole month is never trusted; the next answer replaces it.
    if (!MonthCheck::isWhole(days, month, location, method, location.timeZone()))
        return std::nullopt;
    memory_.insert_or_assign(name, days);
    return days;
}

std::optional<std::vector<DayTimes>> PrayerRepository::fetchOnline(MonthKey month, const Location &location, CalculationMethod method)
{
    // No lock here: a slow network must not hold up other callers.
    if (!fetch_)
        return std::nullopt;
    std::vector<DayTimes> days;
    try {
        days = fetch_(month, location, method);
    } catch (...) {
        return std::nullopt;
    }
    // The fetch vouches for the month (the web client checks it); an empty one is no answer.
    if (days.empty())
        return std::nullopt;
    store(cacheFileName(month, location, method), days);
    return days;
}

void PrayerRepository::store(const std::string &name, const std::vector<DayTimes> &days)
{
    const std::lock_guard lock(mutex_);
    memory_.insert_or_assign(name, days);
    if (cacheDirectory_.empty())
        return;
    try {
        std::error_code error;
        fs::create_directories(cacheDirectory_, error);
        if (error)
            return;
        // A lost month is fetched again, so it is not worth a flush to the disk.
        SafeFile::write(cacheDirectory_ / name, nlohmann::json(days).dump());
    } catch (const std::exception &) {
        // The month stays in memory; the next run fetches it again.
    }
}

} // namespace orvel
