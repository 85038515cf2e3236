#include "DaySource.h"

#include "AladhanClient.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"

#include <memory>

namespace orvel::cli {

DaySource calculatorSource()
{
    return [](const std::vector<DayKey> &keys, const Location &location, CalculationMethod method) {
        const TimeZone zone = location.timeZone();
        DaysAnswer answer{{}, TimesSource::offline};
        answer.days.reserve(keys.size());
        for (const DayKey &key : keys)
            answer.days.push_back(PrayerCalculator::times(key, location, method, zone));
        return answer;
    };
}

DaySource repositorySource(std::filesystem::path cacheDirectory, std::string serviceURL)
{
    const auto repository = std::make_shared<PrayerRepository>(std::move(cacheDirectory), AladhanClient(std::move(serviceURL)));
    return [repository](const std::vector<DayKey> &keys, const Location &location, CalculationMethod method) {
        PrayerRepository::Answer answer = repository->days(keys, location, method);
        return DaysAnswer{std::move(answer.days), answer.source};
    };
}

} // namespace orvel::cli
