#include "Imsakiye.h"

#include "Calendars.h"
#include "OrvelFormat.h"
#include "Ramadan.h"
#include "ReligiousDays.h"
#include "TimeZone.h"

#include <algorithm>

namespace orvel::Imsakiye {

namespace {

constexpr int64_t daysInWeek = 7;
constexpr int64_t monthsInYear = 12;
constexpr int64_t firstMonthAfterRamadan = Ramadan::month + 1;
// 1970-01-01, day 0 of the civil day count, was a Thursday: three days after a Monday.
constexpr int64_t mondayShiftOfDayZero = 3;
const std::string rangeDash = " – ";

int64_t floorDiv(int64_t a, int64_t b)
{
    const int64_t q = a / b;
    return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}

int64_t floorMod(int64_t a, int64_t b)
{
    return a - floorDiv(a, b) * b;
}

// Days since the Monday of the day's week: 0 on a Monday, 6 on a Sunday.
int64_t daysSinceMonday(const DayKey &day)
{
    return floorMod(Calendars::daysFromCivil(day.year, day.month, day.day) + mondayShiftOfDayZero, daysInWeek);
}

std::string formatted(const DayKey &day, const TimeZone &zone, const std::string &pattern)
{
    return OrvelFormat::pattern(day.start(zone), zone, pattern);
}

// The next day's Hijri date where the page does not hold it: the calendar's guess, which only at a
// month's end can be a day apart.
HijriDate following(const DayTimes &day)
{
    const HijriDate today = day.hijriOrApproximate();
    if (today.day < 29)
        return {today.day + 1, today.month, today.year};
    return HijriDate::approximate(day.day.adding(1));
}

} // namespace

MonthKey monthKey(const DayKey &today, int64_t offset)
{
    const int64_t t = (today.month - 1) + offset;
    return {today.year + floorDiv(t, monthsInYear), floorMod(t, monthsInYear) + 1};
}

int64_t targetHijriYear(const ImsakiyePage &page)
{
    if (!page.todayTimes)
        return HijriDate::approximate(page.today).year;
    const HijriDate hijri = page.todayTimes->hijriOrApproximate();
    return hijri.month >= firstMonthAfterRamadan ? hijri.year + 1 : hijri.year;
}

int64_t hijriYear(const ImsakiyePage &page)
{
    return targetHijriYear(page) + page.offset;
}

std::vector<DayKey> keys(const ImsakiyePage &page)
{
    switch (page.mode) {
    case ImsakiyeMode::week: {
        const DayKey monday = page.today.adding(-daysSinceMonday(page.today) + daysInWeek * page.offset);
        std::vector<DayKey> days;
        days.reserve(daysInWeek);
        for (int64_t i = 0; i < daysInWeek; ++i)
            days.push_back(monday.adding(i));
        return days;
    }
    case ImsakiyeMode::month:
        return monthKey(page.today, page.offset).days();
    case ImsakiyeMode::ramadan:
        return Ramadan::candidateDays(hijriYear(page));
    }
    return {};
}

std::vector<DayTimes> pageDays(const ImsakiyePage &page, std::vector<DayTimes> days)
{
    if (page.mode != ImsakiyeMode::ramadan)
        return days;
    const int64_t year = hijriYear(page);
    std::erase_if(days, [year](const DayTimes &day) {
        const HijriDate hijri = day.hijriOrApproximate();
        return hijri.month != Ramadan::month || hijri.year != year;
    });
    return days;
}

std::string title(const ImsakiyePage &page, const std::vector<DayTimes> &days, const TimeZone &zone)
{
    switch (page.mode) {
    case ImsakiyeMode::week:
        if (days.empty())
            return {};
        // Only the first day's number, even when the week starts in the month before.
        return std::to_string(days.front().day.day) + rangeDash + formatted(days.back().day, zone, "d MMMM yyyy");
    case ImsakiyeMode::month: {
        const MonthKey month = monthKey(page.today, page.offset);
        return formatted({month.year, month.month, 1}, zone, "LLLL yyyy");
    }
    case ImsakiyeMode::ramadan: {
        std::string text = "Ramazan " + std::to_string(hijriYear(page));
        if (days.empty())
            return text;
        return text + " · " + formatted(days.front().day, zone, "d MMM") + rangeDash
            + formatted(days.back().day, zone, "d MMM") + " " + std::to_string(days.back().day.year);
    }
    }
    return {};
}

std::optional<std::string> note(ImsakiyeMode mode, const DayKey &day, const HijriDate &hijri,
                                const HijriDate &nextHijri, bool isLastOfRamadan)
{
    // A Ramadan page's last day (the 29th or 30th) ends the month whatever the calendar's guess for
    // the next day says.
    const bool endsRamadan = isLastOfRamadan && hijri.day >= 29;
    const HijriDate next = endsRamadan ? HijriDate{1, Ramadan::month + 1, hijri.year} : nextHijri;
    std::string text;
    for (const ReligiousDay &found : ReligiousDays::of(day, hijri, next)) {
        if (mode == ImsakiyeMode::ramadan && found.name == "Ramazan Başlangıcı")
            continue;
        text += (text.empty() ? "" : " · ") + found.name;
    }
    return text.empty() ? std::nullopt : std::optional(text);
}

std::string hijriText(ImsakiyeMode mode, const HijriDate &hijri)
{
    if (mode == ImsakiyeMode::ramadan)
        return std::to_string(hijri.day) + ". gün";
    return std::to_string(hijri.day) + " " + std::string(hijri.monthName());
}

std::vector<Row> rows(const ImsakiyePage &page, const std::vector<DayTimes> &days, const TimeZone &zone)
{
    std::vector<Row> rows;
    rows.reserve(days.size());
    for (size_t i = 0; i < days.size(); ++i) {
        const DayTimes &day = days[i];
        Row row;
        row.day = day.day;
        row.date = formatted(day.day, zone, "d MMM EEE");
        row.hijriDate = day.hijriOrApproximate();
        row.hijri = hijriText(page.mode, row.hijriDate);
        const bool isLastOfRamadan = page.mode == ImsakiyeMode::ramadan && i + 1 == days.size();
        const HijriDate next = i + 1 < days.size() ? days[i + 1].hijriOrApproximate() : following(day);
        row.note = note(page.mode, day.day, row.hijriDate, next, isLastOfRamadan);
        for (size_t p = 0; p < day.times.size(); ++p)
            row.times[p] = OrvelFormat::time(day.times[p], zone) + (day.estimated[p] ? std::string(estimatedMark) : "");
        row.isToday = day.day == page.today;
        row.isPast = day.day < page.today;
        rows.push_back(std::move(row));
    }
    return rows;
}

std::optional<std::string_view> sourceNote(TimesSource source)
{
    switch (source) {
    case TimesSource::offline:
        return offlineNote;
    case TimesSource::rule:
        return ruleNote;
    case TimesSource::online:
        break;
    }
    return std::nullopt;
}

std::vector<std::string_view> notices(const std::vector<DayTimes> &days)
{
    std::vector<std::string_view> lines{hijriNotice};
    const auto hasEstimate = [](const DayTimes &day) { return std::ranges::any_of(day.estimated, std::identity()); };
    if (std::ranges::any_of(days, hasEstimate))
        lines.push_back(estimatedNotice);
    return lines;
}

bool isHighlighted(ImsakiyeMode mode, Prayer prayer)
{
    return mode == ImsakiyeMode::ramadan && (prayer == Prayer::imsak || prayer == Prayer::aksam);
}

bool isDimmed(const Row &row)
{
    return row.isPast && !row.isToday;
}

std::string_view hijriHeading(ImsakiyeMode mode)
{
    return mode == ImsakiyeMode::ramadan ? "Ramazan" : "Hicri";
}

std::optional<std::string_view> secondHeading(ImsakiyeMode mode, Prayer prayer)
{
    if (!isHighlighted(mode, prayer))
        return std::nullopt;
    return prayer.displayName(true);
}

std::string placeLine(const Location &location, CalculationMethod method)
{
    return location.name + " · " + std::string(method.name());
}

} // namespace orvel::Imsakiye
