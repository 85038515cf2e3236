#include "MonthKey.h"

#include "Calendars.h"
#include "DayKey.h"
#include "JsonValues.h"

#include <cstdio>
#include <nlohmann/json.hpp>

namespace orvel {

int MonthKey::dayCount() const
{
    return Calendars::daysInMonth(year, month);
}

std::vector<DayKey> MonthKey::days() const
{
    std::vector<DayKey> result;
    const int count = dayCount();
    result.reserve(static_cast<size_t>(count));
    for (int day = 1; day <= count; ++day)
        result.push_back({year, month, day});
    return result;
}

std::string MonthKey::description() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%04lld-%02lld", static_cast<long long>(year), static_cast<long long>(month));
    return text;
}

void to_json(nlohmann::json &json, const MonthKey &month)
{
    json = {{"year", month.year}, {"month", month.month}};
}

void from_json(const nlohmann::json &json, MonthKey &month)
{
    month.year = JsonValues::integer(json, "year");
    month.month = JsonValues::integer(json, "month");
}

} // namespace orvel
