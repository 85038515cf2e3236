#include "StatusText.h"

#include "OrvelFormat.h"
#include "Ramadan.h"

namespace orvel::StatusText {

bool isRamadanToday(bool ramadanMode, const std::optional<DayTimes> &today)
{
    return ramadanMode && today && Ramadan::isRamadan(*today);
}

bool nextIsRamadan(bool ramadanMode, const std::optional<PrayerStatus> &status, const std::optional<DayTimes> &today,
                   const std::optional<DayTimes> &tomorrow)
{
    if (!ramadanMode || !status)
        return false;
    const std::optional<DayTimes> &day = status->nextIsTomorrow ? tomorrow : today;
    return day && Ramadan::isRamadan(*day);
}

std::optional<std::string> entryAnnouncement(const PrayerStatus &status, Instant now, bool ramadanToday)
{
    if (!status.isAdhanMoment(now))
        return std::nullopt;
    return std::string(status.current->displayName(ramadanToday)) + " vakti";
}

std::optional<std::string> title(TrayStyle style, const PrayerStatus &status, bool nextIsRamadan,
                                 const TimeZone &zone)
{
    const std::string name(status.next.displayName(nextIsRamadan));
    switch (style) {
    case TrayStyle::nameAndRemaining:
        return name + " " + OrvelFormat::compact(status.minutesRemaining);
    case TrayStyle::remaining:
        return OrvelFormat::compact(status.minutesRemaining);
    case TrayStyle::nameAndTime:
        return name + " " + OrvelFormat::time(status.nextTime, zone);
    case TrayStyle::iconOnly:
        return std::nullopt;
    }
    return std::nullopt;
}

std::string accessibilityLabel(const std::optional<PrayerStatus> &status, bool nextIsRamadan, bool inKerahat)
{
    if (!status)
        return "Orvel";
    std::string label = std::string(status->next.countdownPhrase(nextIsRamadan)) + " "
        + OrvelFormat::spoken(status->minutesRemaining) + " kaldı";
    if (inKerahat)
        label += ", kerahat vakti";
    return label;
}

StatusLine line(TrayStyle style, const StatusFacts &facts, const TimeZone &zone)
{
    StatusLine line;
    line.label = accessibilityLabel(facts.status, facts.nextIsRamadan, facts.inKerahat);
    if (!facts.status)
        return line;
    if (const auto entry = entryAnnouncement(*facts.status, facts.now, facts.ramadanToday)) {
        line.text = *entry;
        line.state = StatusLine::State::entry;
        return line;
    }
    line.text = title(style, *facts.status, facts.nextIsRamadan, zone).value_or("");
    if (facts.inKerahat && facts.kerahatDot)
        line.state = StatusLine::State::kerahat;
    return line;
}

std::string_view stateName(StatusLine::State state)
{
    switch (state) {
    case StatusLine::State::normal:
        return "normal";
    case StatusLine::State::kerahat:
        return "kerahat";
    case StatusLine::State::entry:
        return "entry";
    }
    return "normal";
}

std::optional<StatusLine::State> stateFromName(std::string_view name)
{
    for (const auto state : {StatusLine::State::normal, StatusLine::State::kerahat, StatusLine::State::entry}) {
        if (stateName(state) == name)
            return state;
    }
    return std::nullopt;
}

std::vector<KerahatInterval> kerahatIntervals(const StatusSettings &settings, const std::optional<DayTimes> &today)
{
    if (!settings.showKerahat || !today)
        return {};
    return Kerahat::intervals(*today, settings.kerahatMinutes, Kerahat::defaultIstivaMinutes);
}

StatusFacts facts(const StatusSettings &settings, Instant now, const std::optional<DayTimes> &today,
                  const std::optional<DayTimes> &tomorrow, const TimeZone &zone)
{
    StatusFacts facts;
    facts.now = now;
    if (today)
        facts.status = PrayerSchedule::status(now, *today, tomorrow, zone);
    facts.ramadanToday = isRamadanToday(settings.ramadanMode, today);
    facts.nextIsRamadan = nextIsRamadan(settings.ramadanMode, facts.status, today, tomorrow);
    facts.inKerahat = Kerahat::active(now, kerahatIntervals(settings, today)).has_value();
    facts.kerahatDot = settings.kerahatDot;
    return facts;
}

StatusLine line(const StatusSettings &settings, Instant now, const std::optional<DayTimes> &today,
                const std::optional<DayTimes> &tomorrow, const TimeZone &zone)
{
    return line(settings.style, facts(settings, now, today, tomorrow, zone), zone);
}

} // namespace orvel::StatusText
