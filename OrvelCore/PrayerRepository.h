#pragma once

#include "AladhanClient.h"
#include "CalculationMethod.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "Location.h"
#include "MonthKey.h"
#include "TimesOptions.h"
#include "TimesSource.h"

#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace orvel {

// Which times given days have at a place under a method, month by month: from memory, else the
// cache file, else the online source, else the calculator; Diyanet's from its own rule unless the
// user prefers the service. The user's options are applied to what is answered, never to what is
// kept, so changing them needs no new request. Thread-safe; the lock is not held
// while a month is fetched, so a slow network never blocks another caller.
class PrayerRepository {
public:
    // Gives the whole month (as MonthCheck has it) or throws; AladhanClient::month checks it.
    using MonthFetch = std::function<std::vector<DayTimes>(MonthKey, const Location &, CalculationMethod)>;

    struct Answer {
        std::vector<DayTimes> days;
        TimesSource source = TimesSource::online;
    };

    // An empty folder keeps nothing on disk; an empty fetch never asks the service.
    PrayerRepository(std::filesystem::path cacheDirectory, MonthFetch fetch);
    PrayerRepository(std::filesystem::path cacheDirectory, AladhanClient client);

    // $XDG_DATA_HOME (or ~/.local/share) / Orvel/Cache.
    static std::filesystem::path defaultCacheDirectory();
    // "diyanet_41.008_28.978_Europe-Istanbul_2026-11.json"
    static std::string cacheFileName(MonthKey month, const Location &location, CalculationMethod method);

    const std::filesystem::path &cacheDirectory() const { return cacheDirectory_; }

    // Exactly one day per key, in the order of the keys. Never throws.
    Answer days(const std::vector<DayKey> &keys, const Location &location, CalculationMethod method,
                const TimesOptions &options = {});
    // Makes sure the month is cached when the online source can give it. Never throws.
    void prefetch(MonthKey month, const Location &location, CalculationMethod method, const TimesOptions &options = {});
    // Forgets every month and removes the cache folder.
    void clear();

private:
    static bool asksService(CalculationMethod method, const TimesOptions &options);
    std::optional<std::vector<DayTimes>> cached(MonthKey month, const Location &location, CalculationMethod method);
    std::optional<std::vector<DayTimes>> fetchOnline(MonthKey month, const Location &location, CalculationMethod method);
    void store(const std::string &name, const std::vector<DayTimes> &days);

    std::filesystem::path cacheDirectory_;
    MonthFetch fetch_;
    std::mutex mutex_;
    std::unordered_map<std::string, std::vector<DayTimes>> memory_;
};

} // namespace orvel
