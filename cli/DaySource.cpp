#include "DaySource.h"

#include "PrayerCalculator.h"

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

} // namespace orvel::cli
