#include "DaySource.h"

#include "AladhanClient.h"
#include "PrayerRepository.h"
#include "SafeFile.h"

#include <memory>

#include <nlohmann/json.hpp>

namespace orvel::cli {

namespace {

DaySource from(std::shared_ptr<PrayerRepository> repository)
{
    return [repository](const std::vector<DayKey> &keys, const Location &location, CalculationMethod method,
                        const TimesOptions &options) {
        PrayerRepository::Answer answer = repository->days(keys, location, method, options);
        return DaysAnswer{std::move(answer.days), answer.source};
    };
}

} // namespace

DaySource calculatorSource()
{
    return from(std::make_shared<PrayerRepository>(std::filesystem::path(), PrayerRepository::MonthFetch()));
}

namespace {

namespace fs = std::filesystem;

fs::path failureFile(const fs::path &cacheDirectory, MonthKey month, const Location &location, CalculationMethod method)
{
    return cacheDirectory / (PrayerRepository::cacheFileName(month, location, method) + ".failed");
}

// The last failure's service and moment, as {"service": …, "at": unix seconds}.
bool failedLately(const fs::path &file, const std::string &serviceURL, Instant now)
{
    constexpr std::uintmax_t largest = 4096;
    const std::optional<std::string> text = SafeFile::read(file, largest);
    if (!text)
        return false;
    try {
        const nlohmann::json failure = nlohmann::json::parse(*text);
        const double at = failure.at("at").get<double>();
        const double age = now.unixSeconds() - at;
        return failure.at("service").get<std::string>() == serviceURL && age >= 0 && age < failureQuietSeconds;
    } catch (const std::exception &) {
        return false;
    }
}

void rememberFailure(const fs::path &file, const std::string &serviceURL, Instant now)
{
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    SafeFile::write(file, nlohmann::json{{"service", serviceURL}, {"at", now.unixSeconds()}}.dump());
}

} // namespace

DaySource repositorySource(std::filesystem::path cacheDirectory, std::string serviceURL, const Clock &clock)
{
    const AladhanClient client(serviceURL, serviceTimeout);
    auto fetch = [client, cacheDirectory, serviceURL, &clock](MonthKey month, const Location &location, CalculationMethod method) {
        const fs::path failure = failureFile(cacheDirectory, month, location, method);
        if (failedLately(failure, serviceURL, clock.now()))
            throw AladhanClient::TransportError("the service failed for this month a short while ago");
        try {
            std::vector<DayTimes> days = client.month(month, location, method);
            std::error_code error;
            fs::remove(failure, error);
            return days;
        } catch (...) {
            rememberFailure(failure, serviceURL, clock.now());
            throw;
        }
    };
    return from(std::make_shared<PrayerRepository>(std::move(cacheDirectory), std::move(fetch)));
}

} // namespace orvel::cli
