#include "Calendars.h"

#include <cmath>
#include <cstdio>
#include <memory>

#include <unicode/calendar.h>
#include <unicode/locid.h>

namespace orvel::Calendars {

namespace {

constexpr int64_t secondsPerDay = 86400;

int64_t floorDiv(int64_t a, int64_t b)
{
    const int64_t q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}

std::unique_ptr<icu::Calendar> ummAlQuraCalendar()
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> calendar(
        icu::Calendar::createInstance(icu::TimeZone::getGMT()->clone(), icu::Locale("en@calendar=islamic-umalqura"), status));
    if (U_FAILURE(status))
        return nullptr;
    return calendar;
}

} // namespace

// Howard Hinnant's days_from_civil / civil_from_days.
int64_t daysFromCivil(int64_t year, int64_t month, int64_t day)
{
    year -= month <= 2 ? 1 : 0;
    const int64_t era = floorDiv(year, 400);
    const int64_t yoe = year - era * 400;
    const int64_t mp = (month + 9) % 12;
    const int64_t doy = (153 * mp + 2) / 5 + day - 1;
    const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

CalendarDate civilFromDays(int64_t days)
{
    days += 719468;
    const int64_t era = floorDiv(days, 146097);
    const int64_t doe = days - era * 146097;
    const int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const int64_t mp = (5 * doy + 2) / 153;
    const int64_t day = doy - (153 * mp + 2) / 5 + 1;
    const int64_t month = mp < 10 ? mp + 3 : mp - 9;
    return {yoe + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

int daysInMonth(int64_t year, int64_t month)
{
    const int64_t nextYear = month == 12 ? year + 1 : year;
    const int64_t nextMonth = month == 12 ? 1 : month + 1;
    return static_cast<int>(daysFromCivil(nextYear, nextMonth, 1) - daysFromCivil(year, month, 1));
}

CivilTime civil(Instant instant, const TimeZone &zone)
{
    const double local = std::floor(instant.unixSeconds()) + zone.offsetSeconds(instant);
    const auto localSeconds = static_cast<int64_t>(local);
    const int64_t days = floorDiv(localSeconds, secondsPerDay);
    const int64_t secondOfDay = localSeconds - days * secondsPerDay;
    const CalendarDate date = civilFromDays(days);
    return {date.year, date.month, date.day, secondOfDay / 3600, secondOfDay % 3600 / 60, secondOfDay % 60};
}

Instant wallClock(const CivilTime &time, const TimeZone &zone)
{
    const double local = static_cast<double>(daysFromCivil(time.year, time.month, time.day) * secondsPerDay
                                              + time.hour * 3600 + time.minute * 60 + time.second);
    return Instant::fromUnix(local - zone.offsetSecondsAtLocal(local));
}

std::string iso8601(Instant instant, const TimeZone &zone)
{
    const CivilTime time = civil(instant, zone);
    const int offset = zone.offsetSeconds(instant);
    const int offsetMinutes = (offset < 0 ? -offset : offset) / 60;
    char text[48];
    std::snprintf(text, sizeof text, "%04lld-%02lld-%02lldT%02lld:%02lld:%02lld%c%02d:%02d",
                  static_cast<long long>(time.year), static_cast<long long>(time.month),
                  static_cast<long long>(time.day), static_cast<long long>(time.hour),
                  static_cast<long long>(time.minute), static_cast<long long>(time.second), offset < 0 ? '-' : '+',
                  offsetMinutes / 60, offsetMinutes % 60);
    return text;
}

Instant startOfDay(int64_t year, int64_t month, int64_t day, const TimeZone &zone)
{
    return wallClock({year, month, day, 0, 0, 0}, zone);
}

Instant nextDay(Instant instant, const TimeZone &zone)
{
    const double local = instant.unixSeconds() + zone.offsetSeconds(instant) + secondsPerDay;
    return Instant::fromUnix(local - zone.offsetSecondsAtLocal(local));
}

CalendarDate ummAlQura(Instant instant)
{
    auto calendar = ummAlQuraCalendar();
    if (!calendar)
        return {};
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(instant.udate(), status);
    const int32_t year = calendar->get(UCAL_EXTENDED_YEAR, status);
    const int32_t month = calendar->get(UCAL_MONTH, status) + 1;
    const int32_t day = calendar->get(UCAL_DATE, status);
    if (U_FAILURE(status))
        return {};
    return {year, month, day};
}

std::optional<Instant> fromUmmAlQura(int64_t year, int64_t month, int64_t day)
{
    auto calendar = ummAlQuraCalendar();
    // ICU's fields are 32-bit: a larger year would wrap round to some other year.
    constexpr int64_t yearLimit = 1'000'000;
    if (!calendar || year < -yearLimit || year > yearLimit || month < 1 || month > 12 || day < 1 || day > 30)
        return std::nullopt;
    calendar->setLenient(false);
    calendar->clear();
    calendar->set(UCAL_EXTENDED_YEAR, static_cast<int32_t>(year));
    calendar->set(UCAL_MONTH, static_cast<int32_t>(month - 1));
    calendar->set(UCAL_DATE, static_cast<int32_t>(day));
    UErrorCode status = U_ZERO_ERROR;
    const UDate date = calendar->getTime(status);
    if (U_FAILURE(status))
        return std::nullopt;
    return Instant::fromUdate(date);
}

} // namespace orvel::Calendars
