#include "DiyanetCalendar.h"

#include "Calendars.h"
#include "SafeFile.h"
#include "SolarPosition.h"
#include "TimeZone.h"

#include <libnova/dynamical_time.h>
#include <libnova/lunar.h>
#include <libnova/solar.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <mutex>
#include <numbers>
#include <sstream>
#include <string>

namespace orvel::DiyanetCalendar {

namespace {

constexpr double minimumAltitude = 5;
constexpr double minimumElongation = 8;
constexpr double sunsetAltitude = -0.833;
constexpr double dawnAltitude = -18;
constexpr double earthRadiusKm = 6378.14;
constexpr double gridStep = 2;    // degrees of latitude and longitude between places tried
constexpr double gridLatitude = 60; // beyond it the evening twilight lasts for hours
// The Americas' land, for the 2016 exception, as boxes of latitude and longitude (coastal waters
// included).
struct Box {
    double south, north, west, east;
};
constexpr std::array<Box, 5> americas{{
    {-56, 13, -82, -34},   // South America
    {7, 33, -118, -77},    // Central America and Mexico
    {25, 50, -125, -65},   // the United States
    {50, 54, -133, -55},   // Canada's south
    {55, 72, -166, -55},   // Canada's north and Alaska
}};

bool inAmericas(double latitude, double longitude)
{
    return std::any_of(americas.begin(), americas.end(), [&](const Box &box) {
        return latitude >= box.south && latitude <= box.north && longitude >= box.west && longitude <= box.east;
    });
}
// New Zealand (Wellington), whose dawn bounds the conjunction in that exception.
constexpr double newZealandLatitude = -41.29;
constexpr double newZealandLongitude = 174.78;
// The congress of May 2016 added the exception; it first decided Şevval 1437.
constexpr DayKey exceptionFrom{2016, 6, 1};
constexpr double synodicMonth = 29.530588853;
// The lunar series' smallest term kept (libnova's units): as good as the whole series here, at a
// fifth of its cost.
constexpr double lunarPrecision = 0.000001;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }
double degrees(double radians) { return radians * 180 / std::numbers::pi; }

double julianDay(const DayKey &day) { return day.julianDay(); }

double wrap180(double angle)
{
    const double wrapped = std::fmod(angle + 180, 360);
    return (wrapped < 0 ? wrapped + 360 : wrapped) - 180;
}

struct Body {
    double ra = 0;  // degrees
    double dec = 0; // degrees
    double distance = 0; // km, the moon's
};

// The moon and the sun through the evening, sampled every few hours and interpolated: the moon's
// position series is costly, and over three hours its path bends by far less than 0.01°.
class Sky {
public:
    static constexpr int step = 3;    // hours between samples
    static constexpr int samples = 14; // 0h to 39h UT of the evening's date

    explicit Sky(double startJulianDay)
        : start_(startJulianDay)
    {
        // The distance only moves the parallax by hundredths of a degree over the evening.
        const double distance = distanceAt(ln_get_jde(start_ + 1));
        for (int i = 0; i < samples; ++i) {
            const double jde = ln_get_jde(start_ + i * step / 24.0);
            ln_equ_posn moon{}, sun{};
            ln_get_lunar_equ_coords_prec(jde, &moon, lunarPrecision);
            ln_get_solar_equ_coords(jde, &sun);
            moon_[i] = {moon.ra, moon.dec, distance};
            sun_[i] = {sun.ra, sun.dec, 0};
        }
    }

    Body moon(double hour) const { return at(moon_, hour); }
    Body sun(double hour) const { return at(sun_, hour); }
    double start() const { return start_; }

private:
    static double distanceAt(double jde)
    {
        ln_rect_posn moon{};
        ln_get_lunar_geo_posn(jde, &moon, lunarPrecision);
        return std::sqrt(moon.X * moon.X + moon.Y * moon.Y + moon.Z * moon.Z);
    }

    static Body at(const std::array<Body, samples> &table, double hour)
    {
        const double position = std::clamp(hour / step, 0.0, samples - 1 - 1e-9);
        const auto i = static_cast<size_t>(position);
        const double f = position - static_cast<double>(i);
        const Body &a = table[i];
        const Body &b = table[i + 1];
        return {a.ra + wrap180(b.ra - a.ra) * f, a.dec + (b.dec - a.dec) * f, a.distance + (b.distance - a.distance) * f};
    }

    double start_;
    std::array<Body, samples> moon_{};
    std::array<Body, samples> sun_{};
};

// Hours after 0h UT of the date at which the sun stands at the altitude, in the morning or evening.
std::optional<double> sunAt(const SolarPosition &sun, double latitude, double longitude, double altitude, bool evening)
{
    const auto hourAngle = sun.hourAngle(latitude, altitude);
    if (!hourAngle)
        return std::nullopt;
    const double noon = 12 - longitude / 15 - sun.equationOfTime;
    return evening ? noon + *hourAngle : noon - *hourAngle;
}

bool criterionHolds(const Sky &sky, double hour, double latitude, double longitude)
{
    const Body moon = sky.moon(hour);
    const Body sun = sky.sun(hour);
    const double cosElongation = std::sin(radians(moon.dec)) * std::sin(radians(sun.dec))
        + std::cos(radians(moon.dec)) * std::cos(radians(sun.dec)) * std::cos(radians(moon.ra - sun.ra));
    if (degrees(std::acos(std::clamp(cosElongation, -1.0, 1.0))) < minimumElongation)
        return false;
    // Greenwich mean sidereal time (Meeus 12.4 without its tiny T² terms).
    const double siderealDegrees = 280.46061837 + 360.98564736629 * (sky.start() + hour / 24 - 2451545.0) + longitude;
    const double hourAngle = radians(siderealDegrees - moon.ra);
    const double phi = radians(latitude);
    const double altitude = degrees(std::asin(std::sin(phi) * std::sin(radians(moon.dec))
                                              + std::cos(phi) * std::cos(radians(moon.dec)) * std::cos(hourAngle)));
    const double parallax = degrees(std::asin(earthRadiusKm / moon.distance));
    return altitude - parallax * std::cos(radians(altitude)) >= minimumAltitude;
}

// Months whose first day Diyanet announced otherwise than the criteria computed here give it
// (its published calendars of religious days: Kurban Bayramı 2016 on 12 September, Hicri Yılbaşı
// 1452 on 3 May 2030, Mevlid Kandili 1455 on 9 June 2033).
constexpr std::array<std::pair<std::pair<int64_t, int64_t>, DayKey>, 3> announced{{
    {{1437, 12}, DayKey{2016, 9, 3}},
    {{1452, 1}, DayKey{2030, 5, 3}},
    {{1455, 3}, DayKey{2033, 5, 30}},
}};

// The stored starts' format; a file of another one is computed afresh.
constexpr std::string_view storeHeader = "# Orvel: Diyanet month starts, v2";
constexpr std::uintmax_t storeMaxBytes = 1 << 20;

using MonthStarts = std::map<std::pair<int64_t, int64_t>, DayKey>;

std::mutex cacheMutex;
MonthStarts &monthStarts()
{
    static MonthStarts starts;
    return starts;
}
std::filesystem::path &storePath()
{
    static std::filesystem::path path;
    return path;
}

// "1447 9 2026-02-18" lines under the header; lines that do not read are skipped.
MonthStarts readStore(const std::filesystem::path &path)
{
    MonthStarts starts;
    const auto text = SafeFile::read(path, storeMaxBytes);
    if (!text || !text->starts_with(storeHeader))
        return starts;
    std::istringstream lines(*text);
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        int64_t year = 0, month = 0, y = 0, m = 0, d = 0;
        char dash1 = 0, dash2 = 0;
        std::istringstream fields(line);
        if (!(fields >> year >> month >> y >> dash1 >> m >> dash2 >> d) || dash1 != '-' || dash2 != '-')
            continue;
        const DayKey day{y, m, d};
        if (year < firstYear || year > lastYear || month < 1 || month > 12 || m < 1 || m > 12 || d < 1
            || d > Calendars::daysInMonth(y, m) || y < 1850 || y > 2200)
            continue;
        starts.insert_or_assign({year, month}, day);
    }
    return starts;
}

std::string storeText(const MonthStarts &starts)
{
    std::string text(storeHeader);
    text += '\n';
    for (const auto &[key, day] : starts)
        text += std::to_string(key.first) + ' ' + std::to_string(key.second) + ' ' + day.description() + '\n';
    return text;
}

std::pair<int64_t, int64_t> shifted(int64_t year, int64_t month, int64_t by)
{
    const int64_t index = year * 12 + (month - 1) + by;
    return {index / 12, index % 12 + 1};
}

} // namespace

double conjunctionNear(double jd)
{
    // Newton's steps on the difference of the apparent longitudes; the moon gains ~12.19° a day.
    for (int i = 0; i < 8; ++i) {
        const double jde = ln_get_jde(jd);
        ln_lnlat_posn moon{}, sun{};
        ln_get_lunar_ecl_coords(jde, &moon, lunarPrecision);
        ln_get_solar_ecl_coords(jde, &sun);
        const double difference = wrap180(moon.lng - sun.lng);
        jd -= difference / 12.19;
        if (std::fabs(difference) < 1e-5)
            break;
    }
    return jd;
}

bool crescentVisible(const DayKey &evening, double conjunction)
{
    const double start = julianDay(evening);
    const Sky sky(start);
    const SolarPosition sun = SolarPosition::at(start);
    const double conjunctionHour = (conjunction - start) * 24;

    // The exception's condition: the conjunction before dawn of the next day in New Zealand,
    // which falls on this UT date.
    const SolarPosition nextSun = SolarPosition::at(start + 1);
    const auto dawn = sunAt(nextSun, newZealandLatitude, newZealandLongitude, dawnAltitude, false);
    const bool exceptionOpen = evening >= exceptionFrom && dawn && conjunctionHour < 24 + *dawn;

    for (double longitude = -180; longitude < 180; longitude += gridStep) {
        for (double latitude = -gridLatitude; latitude <= gridLatitude; latitude += gridStep) {
            const auto sunset = sunAt(sun, latitude, longitude, sunsetAltitude, true);
            if (!sunset || *sunset <= conjunctionHour)
                continue;
            if (*sunset >= 24) {
                if (!exceptionOpen || !inAmericas(latitude, longitude))
                    continue;
            }
            if (criterionHolds(sky, *sunset, latitude, longitude))
                return true;
        }
    }
    return false;
}

void keepMonthStartsIn(const std::filesystem::path &file)
{
    MonthStarts stored = readStore(file);
    const std::lock_guard lock(cacheMutex);
    storePath() = file;
    stored.merge(monthStarts());
    monthStarts() = std::move(stored);
}

std::optional<DayKey> firstDay(int64_t year, int64_t month)
{
    if (year < firstYear || year > lastYear || month < 1 || month > 12)
        return std::nullopt;
    for (const auto &[key, day] : announced) {
        if (key == std::pair{year, month})
            return day;
    }
    {
        const std::lock_guard lock(cacheMutex);
        if (const auto found = monthStarts().find({year, month}); found != monthStarts().end())
            return found->second;
    }
    const auto estimate = Calendars::fromUmmAlQura(year, month, 1);
    if (!estimate)
        return std::nullopt;
    const DayKey approximate = DayKey::from(*estimate, TimeZone::utc());
    double conjunction = conjunctionNear(julianDay(approximate) - 1);
    // Umm al-Qura's first day may lie either side of the conjunction: take the new moon that
    // precedes the estimate by at most a few days.
    if (conjunction > julianDay(approximate) + 1)
        conjunction = conjunctionNear(conjunction - synodicMonth);
    const DayKey conjunctionDay = DayKey::from(Instant{(conjunction - 2451910.5) * 86400}, TimeZone::utc());

    DayKey evening = conjunctionDay;
    while (!crescentVisible(evening, conjunction) && evening < conjunctionDay.adding(3))
        evening = evening.adding(1);
    const DayKey first = evening.adding(1);

    const std::lock_guard lock(cacheMutex);
    monthStarts().insert_or_assign({year, month}, first);
    if (!storePath().empty()) {
        // A failed write only costs the computation again at the next start.
        std::error_code error;
        std::filesystem::create_directories(storePath().parent_path(), error);
        SafeFile::write(storePath(), storeText(monthStarts()));
    }
    return first;
}

HijriDate date(const DayKey &day)
{
    const HijriDate estimate = HijriDate::approximate(day);
    if (estimate.year < firstYear || estimate.year > lastYear)
        return estimate;
    for (const int64_t by : {0, -1, 1}) {
        const auto [year, month] = shifted(estimate.year, estimate.month, by);
        const auto [nextYear, nextMonth] = shifted(year, month, 1);
        const auto first = firstDay(year, month);
        const auto next = firstDay(nextYear, nextMonth);
        if (!first || !next)
            break;
        if (day >= *first && day < *next)
            return {static_cast<int64_t>(julianDay(day) - julianDay(*first)) + 1, month, year};
    }
    return estimate;
}

} // namespace orvel::DiyanetCalendar
