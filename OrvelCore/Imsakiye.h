#pragma once

#include "CalculationMethod.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "HijriDate.h"
#include "ImsakiyeMode.h"
#include "Location.h"
#include "MonthKey.h"
#include "Prayer.h"
#include "TimesSource.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvel {

class TimeZone;

// Where a page of the timetable stands: its mode, how many pages before (negative) or after the
// current one it is, and today, whose loaded times (when there are any) decide whether this
// year's Ramadan is over.
struct ImsakiyePage {
    ImsakiyeMode mode = ImsakiyeMode::month;
    int64_t offset = 0;
    DayKey today;
    std::optional<DayTimes> todayTimes;

    bool operator==(const ImsakiyePage &) const = default;
};

// The timetable's rules, shared by the window, the printed page and the command line so that all
// three show the same days with the same words.
namespace Imsakiye {

constexpr std::string_view offlineNote = "· Çevrimdışı, cihazda hesaplandı";
constexpr std::string_view ruleNote = "· Diyanet hesabı, cihazda";
// After a time the high-latitude rule estimated, and the line that explains the mark.
constexpr std::string_view estimatedMark = "*";
constexpr std::string_view estimatedNotice = "* tahmini: güneş o gün yeterince alçalmıyor";
constexpr std::string_view hijriNotice = "Hicri tarihler ±1 gün farklı olabilir";

// One row as every view shows it.
struct Row {
    DayKey day;
    std::string date;  // "16 Kas Pzt"
    std::string hijri; // "7 Ramazan", or "7. gün" in Ramadan mode
    HijriDate hijriDate;
    std::optional<std::string> note;
    std::array<std::string, 6> times; // "05:12", "05:12*" when estimated, in Prayer::all order
    bool isToday = false;
    bool isPast = false;

    bool operator==(const Row &) const = default;
};

// The month shown in month mode: today's month moved by the offset, across years both ways.
MonthKey monthKey(const DayKey &today, int64_t offset);
// The Hijri year whose Ramadan the current page shows: today's, or the next one once today is in
// Şevval or later. Before today's times are loaded, the approximate year as it is.
int64_t targetHijriYear(const ImsakiyePage &page);
// The Hijri year of the page: the target year moved by the offset.
int64_t hijriYear(const ImsakiyePage &page);
// The days to ask for: Monday to Sunday, the month's days, or a Ramadan's candidate days.
std::vector<DayKey> keys(const ImsakiyePage &page);
// What the page keeps of the days asked for: in Ramadan mode only the days of that Ramadan
// (29 or 30), in their order; all of them otherwise.
std::vector<DayTimes> pageDays(const ImsakiyePage &page, std::vector<DayTimes> days);

// "9 – 15 Mart 2026", "Mart 2026", "Ramazan 1447 · 18 Şub – 19 Mar 2026"; an empty week gives "".
std::string title(const ImsakiyePage &page, const std::vector<DayTimes> &days, const TimeZone &zone);

// The day's religious days and nights as Diyanet names them ("Berat Kandili", "Ramazan Bayramı
// (1. Gün)"), joined by " · "; the last day of a Ramadan page is its Bayram's arefe, and a Ramadan
// page, which starts with it, does not note the start of Ramadan.
std::optional<std::string> note(ImsakiyeMode mode, const DayKey &day, const HijriDate &hijri,
                                const HijriDate &nextHijri, bool isLastOfRamadan);
// "7. gün" in Ramadan mode, "7 Ramazan" otherwise.
std::string hijriText(ImsakiyeMode mode, const HijriDate &hijri);
std::vector<Row> rows(const ImsakiyePage &page, const std::vector<DayTimes> &days, const TimeZone &zone);
// Where the times came from, beside the place; none for the service's own times.
std::optional<std::string_view> sourceNote(TimesSource source);
// The notes under the table: the Hijri caveat, and what the mark of an estimated time means when
// a row has one.
std::vector<std::string_view> notices(const std::vector<DayTimes> &days);

// Sahur and iftar stand out in Ramadan mode.
bool isHighlighted(ImsakiyeMode mode, Prayer prayer);
// Days gone by fade on every page, so that today and the days to come stand out.
bool isDimmed(const Row &row);
// The columns' headings: "Tarih", "Hicri" or "Ramazan", the prayers' names, and under İmsak and
// Akşam "Sahur" and "İftar" in Ramadan mode.
std::string_view hijriHeading(ImsakiyeMode mode);
std::optional<std::string_view> secondHeading(ImsakiyeMode mode, Prayer prayer);
// "İstanbul, Üsküdar · Diyanet İşleri Başkanlığı".
std::string placeLine(const Location &location, CalculationMethod method);

} // namespace Imsakiye

} // namespace orvel
