#include "PanelRules.h"

#include "OrvelFormat.h"
#include "Qibla.h"
#include "Ramadan.h"
#include "TimeZone.h"
#include "ViewStyle.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace orvel::PanelRules {

namespace {

constexpr double minuteSeconds = 60;
const QString separator = QStringLiteral(" · ");

std::vector<KerahatInterval> ofKinds(const std::vector<KerahatInterval> &intervals,
                                     std::initializer_list<KerahatKind::Value> kinds)
{
    std::vector<KerahatInterval> chosen;
    for (const KerahatInterval &interval : intervals) {
        if (std::find(kinds.begin(), kinds.end(), interval.kind) != kinds.end())
            chosen.push_back(interval);
    }
    return chosen;
}

int64_t minutesCeiling(double seconds)
{
    return std::max<int64_t>(1, static_cast<int64_t>(std::ceil(seconds / minuteSeconds)));
}

QString clock(Instant instant, const TimeZone &zone)
{
    return QString::fromStdString(OrvelFormat::time(instant, zone));
}

std::optional<QString> subtitleDetail(Prayer next, bool nextIsRamadan)
{
    switch (next) {
    case Prayer::imsak:
        return nextIsRamadan ? std::optional(QStringLiteral("İmsak")) : std::nullopt;
    case Prayer::gunes:
        return QStringLiteral("Güneş doğuşu");
    case Prayer::aksam:
        return nextIsRamadan ? QStringLiteral("Akşam ezanı") : QStringLiteral("Güneş batışı");
    default:
        return std::nullopt;
    }
}

} // namespace

PrayerRowState rowState(Prayer prayer, const PrayerStatus &status, const DayTimes &today, Instant now)
{
    if (status.current && *status.current == prayer && status.currentTime == today[prayer])
        return PrayerRowState::current;
    if (status.next == prayer && !status.nextIsTomorrow)
        return PrayerRowState::next;
    if (today[prayer] <= now)
        return PrayerRowState::past;
    return PrayerRowState::upcoming;
}

std::vector<KerahatInterval> kerahatBefore(Prayer prayer, const std::vector<KerahatInterval> &intervals)
{
    switch (prayer) {
    case Prayer::ogle:
        return ofKinds(intervals, {KerahatKind::istiva});
    case Prayer::aksam:
        return ofKinds(intervals, {KerahatKind::sunset});
    default:
        return {};
    }
}

std::vector<KerahatInterval> kerahatAfter(Prayer prayer, const std::vector<KerahatInterval> &intervals)
{
    if (prayer == Prayer::gunes)
        return ofKinds(intervals, {KerahatKind::sunrise});
    return {};
}

KerahatRowState kerahatRowState(const KerahatInterval &interval, Instant now)
{
    if (interval.contains(now))
        return KerahatRowState::active;
    if (interval.end <= now)
        return KerahatRowState::past;
    return KerahatRowState::upcoming;
}

bool showsCountdown(const KerahatInterval &interval, const std::vector<KerahatInterval> &intervals, Instant now)
{
    if (Kerahat::active(now, intervals))
        return false;
    const std::optional<KerahatInterval> next = Kerahat::next(now, intervals);
    return next && *next == interval;
}

int64_t minutesUntilStart(const KerahatInterval &interval, Instant now)
{
    return minutesCeiling(interval.start - now);
}

QString kerahatCountdown(const KerahatInterval &interval, Instant now)
{
    const int64_t minutes = minutesUntilStart(interval, now);
    if (minutes >= 60)
        return QStringLiteral("%1 sa %2 dk").arg(minutes / 60).arg(minutes % 60);
    return QStringLiteral("%1 dk").arg(minutes);
}

int64_t bannerMinutesLeft(const KerahatInterval &interval, Instant now)
{
    return minutesCeiling(interval.end - now);
}

QString bannerDetail(const KerahatInterval &interval, const TimeZone &zone)
{
    return ViewStyle::text(interval.kind.explanation()) + separator
        + QString::fromStdString(OrvelFormat::timeWithDative(interval.end, zone)) + QStringLiteral(" kadar");
}

QString kerahatRange(const KerahatInterval &interval, const TimeZone &zone)
{
    return clock(interval.start, zone) + QStringLiteral(" – ") + clock(interval.end, zone);
}

QString kerahatAccessibleName(const KerahatInterval &interval, const TimeZone &zone)
{
    return ViewStyle::text(interval.kind.title()) + QStringLiteral(", ") + clock(interval.start, zone)
        + QStringLiteral(" ile ") + clock(interval.end, zone) + QStringLiteral(" arası");
}

std::optional<QString> ramadanLine(std::optional<int64_t> ramadanDay, const std::optional<DayTimes> &today,
                                   const std::vector<ReligiousDay> &religiousDays)
{
    if (!religiousDays.empty()) {
        QStringList lines;
        for (const ReligiousDay &day : religiousDays)
            lines << QString::fromStdString(day.headline());
        return lines.join(QStringLiteral(" · "));
    }
    if (!ramadanDay || !today)
        return std::nullopt;
    if (Ramadan::isKadirEve(*today))
        return QStringLiteral("Bu gece Kadir Gecesi");
    return QStringLiteral("Ramazan'ın %1. günü").arg(*ramadanDay);
}

QString qiblaLine(const Location &place, const DayKey &day)
{
    const double bearing = Qibla::bearing(place.latitude, place.longitude);
    QString line = QStringLiteral("Kıble ") + QString::fromStdString(Qibla::bearingText(bearing))
        + QStringLiteral(" · Kâbe'ye ")
        + QString::fromStdString(Qibla::distanceText(Qibla::distanceKm(place.latitude, place.longitude)));
    const TimeZone zone = place.timeZone();
    if (const std::optional<Instant> hour = Qibla::sunInDirection(day, place.latitude, place.longitude, zone))
        line += QStringLiteral(" · kıble saati ") + QString::fromStdString(OrvelFormat::time(*hour, zone));
    return line;
}

CountdownTitle countdownTitle(const QString &phrase, const QString &name)
{
    const QString kalan = QStringLiteral(" kalan");
    if (!name.isEmpty() && phrase.startsWith(name))
        return {name, phrase.mid(name.size()) + kalan};
    return {QString(), phrase + kalan};
}

CountdownTitle countdownTitle(Prayer next, bool ramadan)
{
    return countdownTitle(ViewStyle::text(next.countdownPhrase(ramadan)), ViewStyle::text(next.displayName(ramadan)));
}

QString subtitle(const PrayerStatus &status, bool nextIsRamadan, const TimeZone &zone)
{
    QString line = clock(status.nextTime, zone);
    if (status.nextIsTomorrow)
        line.prepend(QStringLiteral("Yarın "));
    if (const std::optional<QString> detail = subtitleDetail(status.next, nextIsRamadan))
        line += separator + *detail;
    return line;
}

BigTime bigTime(int64_t minutesRemaining)
{
    const int64_t hours = minutesRemaining / 60;
    return {hours >= 1 ? std::optional(hours) : std::nullopt, minutesRemaining % 60};
}

double fraction(Instant instant, const DayTimes &today)
{
    const double span = today[Prayer::yatsi] - today[Prayer::imsak];
    if (span <= 0)
        return 0;
    return std::clamp((instant - today[Prayer::imsak]) / span, 0.0, 1.0);
}

SourceItem sourceItem(TimesSource source, CalculationMethod method)
{
    if (source == TimesSource::offline)
        return {QStringLiteral("Çevrimdışı · cihazda hesaplandı"), QStringLiteral("wifi.slash")};
    if (source == TimesSource::rule)
        return {ViewStyle::text(source.label()), QString()};
    return {ViewStyle::text(method.shortName()), QString()};
}

std::optional<QString> prayerTag(Prayer prayer, bool ramadanToday, bool estimated)
{
    const std::optional<std::string_view> ramadan = ramadanToday ? prayer.ramadanTag() : std::nullopt;
    QStringList words;
    if (ramadan)
        words << ViewStyle::text(*ramadan);
    if (estimated)
        words << QStringLiteral("tahmini");
    return words.isEmpty() ? std::nullopt : std::optional(words.join(QStringLiteral(" · ")));
}

QString bellToolTip(Prayer prayer, bool notify)
{
    return ViewStyle::text(prayer.name()) + (notify ? QStringLiteral(" bildirimini kapat") : QStringLiteral(" bildirimini aç"));
}

QString rowAccessibleName(Prayer prayer, const QString &time, PrayerRowState state)
{
    QString name = ViewStyle::text(prayer.name()) + u' ' + time;
    if (state == PrayerRowState::current)
        name += QStringLiteral(", şu anki orvel");
    return name;
}

} // namespace orvel::PanelRules
