#include "PrayerRepository.h"

#include "PrayerCalculator.h"
#include "TimeZone.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <system_error>
#include <thread>
#include <unordered_set>

#include <nlohmann/json.hpp>

#if defined(_WIN32)
#include <process.h>
#else
#include <pwd.h>
#include <unistd.h>
#endif

namespace orvel {

namespace fs = std::filesystem;

namespace {

// A month file is a few kilobytes; a huge file in the folder is not ours and is not read.
constexpr std::uintmax_t maximumFileSize = 4 * 1024 * 1024;

#if !defined(_WIN32)
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
#endif

std::optional<std::string> readFile(const fs::path &path)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    if (error || size > maximumFileSize)
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad())
        return std::nullopt;
    return text;
}

// Unique among writers at the same moment: other processes differ by id, threads of this one by
// their thread id.
std::string temporarySuffix()
{
#if defined(_WIN32)
    const auto process = _getpid();
#else
    const auto process = getpid();
#endif
    return ".tmp-" + std::to_string(process) + "-" + std::to_string(std::hash<std::thread::id>()(std::this_thread::get_id()));
}

// Readers see either the old file or the whole new one, never a half-written one.
void writeAtomically(const fs::path &target, const std::string &text)
{
    fs::path temporary = target;
    temporary += temporarySuffix();
    std::error_code error;
    {
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        if (!file)
            return;
        file.write(text.data(), static_cast<std::streamsize>(text.size()));
        file.flush();
        if (!file) {
            file.close();
            fs::remove(temporary, error);
            return;
        }
    }
    fs::rename(temporary, target, error);
    if (error)
        fs::remove(temporary, error);
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
#if defined(_WIN32)
    const char *appData = std::getenv("APPDATA");
    const fs::path base = appData && *appData ? fs::path(appData) : fs::temp_directory_path();
#elif defined(__APPLE__)
    const fs::path base = homeDirectory() / "Library" / "Application Support";
#else
    const char *dataHome = std::getenv("XDG_DATA_HOME");
    const fs::path base = dataHome && fs::path(dataHome).is_absolute() ? fs::path(dataHome) : homeDirectory() / ".local" / "share";
#endif
    return base / "Orvel" / "Cache";
}

std::string PrayerRepository::cacheFileName(MonthKey month, const Location &location, CalculationMethod method)
{
    std::string zone = location.timeZoneID;
    std::replace(zone.begin(), zone.end(), '/', '-');
    std::string name(method.rawValue());
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
    for (const MonthKey &month : months) {
        auto list = cached(month, location, method);
        if (!list)
            list = fetchOnline(month, location, method);
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

    const auto text = readFile(cacheDirectory_ / name);
    if (!text)
        return std::nullopt;
    std::vector<DayTimes> days;
    try {
        days = nlohmann::json::parse(*text).get<std::vector<DayTimes>>();
    } catch (const std::exception &) {
        return std::nullopt;
    }
    if (days.size() != static_cast<size_t>(month.dayCount()))
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
        writeAtomically(cacheDirectory_ / name, nlohmann::json(days).dump());
    } catch (const std::exception &) {
        // The month stays in memory; the next run fetches it again.
    }
}

} // namespace orvel
