#include "CalendarFile.h"

#include "AppId.h"

#include <libical/ical.h>

#include <cmath>
#include <memory>

namespace orvel::CalendarFile {

namespace {

struct ComponentFree {
    void operator()(icalcomponent *component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, ComponentFree>;

icaltimetype utc(Instant instant)
{
    return icaltime_from_timet_with_zone(static_cast<time_t>(std::llround(instant.unixSeconds())), 0,
                                         icaltimezone_get_utc_timezone());
}

icaltimetype date(const DayKey &day)
{
    icaltimetype value = icaltime_null_date();
    value.year = static_cast<int>(day.year);
    value.month = static_cast<int>(day.month);
    value.day = static_cast<int>(day.day);
    return value;
}

// A stable id: the same time of the same day at the same place is the same event.
std::string uid(const std::string &what, const Contents &contents)
{
    char point[64];
    std::snprintf(point, sizeof point, "%.4f_%.4f", contents.location.latitude, contents.location.longitude);
    return what + "-" + std::string(contents.method.id()) + "-" + point + "@" + AppId::id;
}

icalcomponent *event(const std::string &id, const std::string &summary, icaltimetype stamp)
{
    icalcomponent *event = icalcomponent_new_vevent();
    icalcomponent_add_property(event, icalproperty_new_uid(id.c_str()));
    icalcomponent_add_property(event, icalproperty_new_dtstamp(stamp));
    icalcomponent_add_property(event, icalproperty_new_summary(summary.c_str()));
    icalcomponent_add_property(event, icalproperty_new_transp(ICAL_TRANSP_TRANSPARENT));
    return event;
}

} // namespace

std::string ics(const Contents &contents)
{
    const Component calendar(icalcomponent_new_vcalendar());
    icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
    icalcomponent_add_property(calendar.get(), icalproperty_new_prodid("-//Orvel//Namaz vakitleri//TR"));
    icalcomponent_add_property(calendar.get(), icalproperty_new_calscale("GREGORIAN"));
    icalproperty *name = icalproperty_new_x(("Namaz vakitleri · " + contents.location.name).c_str());
    icalproperty_set_x_name(name, "X-WR-CALNAME");
    icalcomponent_add_property(calendar.get(), name);

    const icaltimetype stamp = utc(contents.stamp);
    const icalgeotype geo{contents.location.latitude, contents.location.longitude};
    for (const DayTimes &day : contents.days) {
        for (const Prayer::Value value : Prayer::all) {
            if (!contents.prayers.contains(value))
                continue;
            const Prayer prayer(value);
            icalcomponent *time = event(uid(day.day.description() + "-" + std::string(prayer.id()), contents),
                                        std::string(prayer.name()) + " · " + contents.location.name, stamp);
            // At its moment: an event without an end lasts no time.
            icalcomponent_add_property(time, icalproperty_new_dtstart(utc(day[prayer])));
            icalcomponent_add_property(time, icalproperty_new_location(contents.location.name.c_str()));
            icalcomponent_add_property(time, icalproperty_new_geo(geo));
            icalcomponent_add_property(time, icalproperty_new_categories("Namaz vakti"));
            icalcomponent_add_component(calendar.get(), time);
        }
    }
    for (const ReligiousDay &holy : contents.religiousDays) {
        icalcomponent *day = event(uid(holy.date.description() + "-" + holy.name, contents), holy.name, stamp);
        icalcomponent_add_property(day, icalproperty_new_dtstart(date(holy.date)));
        icalcomponent_add_property(day, icalproperty_new_dtend(date(holy.date.adding(1))));
        icalcomponent_add_property(day, icalproperty_new_description(holy.hijri.formatted().c_str()));
        icalcomponent_add_property(day, icalproperty_new_categories("Dini gün"));
        icalcomponent_add_component(calendar.get(), day);
    }
    char *text = icalcomponent_as_ical_string_r(calendar.get());
    std::string result(text);
    icalmemory_free_buffer(text);
    return result;
}

} // namespace orvel::CalendarFile
