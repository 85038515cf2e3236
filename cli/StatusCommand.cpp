#include "StatusCommand.h"

#include "AppSettings.h"
#include "Calendars.h"
#include "Clock.h"
#include "OrvelFormat.h"
#include "StatusText.h"

#include <nlohmann/json.hpp>
#include <ostream>

namespace orvel::cli::StatusCommand {

namespace {

using OrderedJson = nlohmann::ordered_json;

// The status item's own defaults: Ramadan names on, kerahat shown with its default lengths.
constexpr bool ramadanMode = true;

struct Choices {
    PlaceOptions place = AppSettings::placeOptions();
    SourceOptions sources;
    std::optional<CivilTime> now;
    Format format = Format::text;
};

Format format(std::string_view value)
{
    if (value == "text")
        return Format::text;
    if (value == "json")
        return Format::json;
    if (value == "waybar")
        return Format::waybar;
    throw UsageError("geçersiz biçim: " + std::string(value) + " (text, json veya waybar olmalı)");
}

OptionTable optionTable(Choices &choices)
{
    OptionTable table;
    table.add({"--now", "YYYY-AA-GGTSS:dd", "bu an için yaz, yerin saat dilimine göre (varsayılan: şimdi)",
               [&choices](std::string_view value) { choices.now = Values::minute(value); }});
    table.add({"--format", "BİÇİM", "text (iki satır), json ya da waybar (tek satır JSON); varsayılan text",
               [&choices](std::string_view value) { choices.format = format(value); }});
    choices.place.addTo(table);
    choices.sources.addTo(table);
    table.add({"--help", "", "bu yardımı göster", [](std::string_view) {}});
    return table;
}

OrderedJson isoOrNull(const std::optional<Instant> &instant, const TimeZone &zone)
{
    return instant ? OrderedJson(Calendars::iso8601(*instant, zone)) : OrderedJson(nullptr);
}

std::string waybarClass(const Moment &moment)
{
    if (moment.entryMinute)
        return "adhan";
    return moment.kerahat ? "kerahat" : "normal";
}

std::string dump(const OrderedJson &document, int indent)
{
    // A place name given on the command line need not be valid UTF-8.
    return document.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace

Request parse(const std::vector<std::string> &args, const Clock &clock)
{
    Choices choices;
    optionTable(choices).parse(args);
    Request request;
    request.location = choices.place.location();
    request.method = choices.place.method;
    request.sources = choices.sources;
    request.format = choices.format;
    // The status item moves in whole minutes; so does this.
    request.now = choices.now ? Calendars::wallClock(*choices.now, request.location.timeZone()) : clock.now().floorToMinute();
    return request;
}

std::vector<DayKey> days(const Request &request)
{
    const DayKey today = DayKey::from(request.now, request.location.timeZone());
    return {today, today.adding(1)};
}

Moment moment(const Request &request, const DaysAnswer &answer)
{
    Moment moment{answer.days.at(0), answer.days.at(1), answer.source, {}, {}, false, false, {}, {}};
    const Instant now = request.now;
    moment.status = PrayerSchedule::status(now, moment.today, moment.tomorrow, request.location.timeZone());
    moment.kerahat = Kerahat::active(
        now, Kerahat::intervals(moment.today, Kerahat::defaultSunMinutes, Kerahat::defaultIstivaMinutes));
    moment.ramadanToday = StatusText::isRamadanToday(ramadanMode, moment.today);
    const bool nextIsRamadan = StatusText::nextIsRamadan(ramadanMode, moment.status, moment.today, moment.tomorrow);

    const StatusFacts facts{moment.status, now, moment.ramadanToday, nextIsRamadan, moment.kerahat.has_value(), true};
    const StatusLine line = StatusText::line(MenuBarStyle::nameAndRemaining, facts, request.location.timeZone());
    moment.entryMinute = line.state == StatusLine::State::entry;
    moment.title = line.text;
    moment.label = line.label;
    return moment;
}

std::string text(const Moment &moment)
{
    return moment.title + "\n" + moment.label + "\n";
}

std::string json(const Request &request, const Moment &moment)
{
    const TimeZone zone = request.location.timeZone();
    const PrayerStatus &status = moment.status;
    OrderedJson kerahat = nullptr;
    if (moment.kerahat) {
        kerahat = {{"kind", moment.kerahat->kind.rawValue()},
                   {"start", Calendars::iso8601(moment.kerahat->start, zone)},
                   {"end", Calendars::iso8601(moment.kerahat->end, zone)}};
    }
    const OrderedJson document{
        {"current", status.current ? OrderedJson(status.current->rawValue()) : OrderedJson(nullptr)},
        {"currentTime", isoOrNull(status.currentTime, zone)},
        {"next", status.next.rawValue()},
        {"nextTime", Calendars::iso8601(status.nextTime, zone)},
        {"nextIsTomorrow", status.nextIsTomorrow},
        {"dayProgress", status.dayProgress},
        {"minutesRemaining", status.minutesRemaining},
        {"kerahat", std::move(kerahat)},
        {"title", moment.title},
        {"label", moment.label},
        {"location", OrderedJson(nlohmann::json(request.location))},
        {"method", request.method.rawValue()},
        {"source", rawValue(moment.source)},
    };
    return dump(document, 2) + "\n";
}

std::string waybar(const Request &request, const Moment &moment)
{
    const TimeZone zone = request.location.timeZone();
    std::string tooltip;
    for (const Prayer::Value prayer : Prayer::allCases) {
        tooltip += std::string(Prayer(prayer).displayName(moment.ramadanToday)) + " "
            + OrvelFormat::time(moment.today[prayer], zone) + "\n";
    }
    tooltip += moment.label;
    const OrderedJson document{
        {"text", moment.title},
        {"tooltip", tooltip},
        {"class", waybarClass(moment)},
        {"alt", moment.status.next.rawValue()},
        {"percentage", static_cast<int>(moment.status.dayProgress * 100)},
    };
    return dump(document, -1) + "\n";
}

std::string help()
{
    Choices choices;
    return "Kullanım: orvel-cli status [seçenekler]\n\n"
           "Sıradaki vakti ve kalan süreyi durum çubuğundaki gibi yazar: ilk satırda başlık (\"Akşam 1:15\",\n"
           "bir vakit girdiği dakikada \"Öğle vakti\"), ikinci satırda okunuşu; kerahat vaktinde bunu da söyler.\n"
           "--format json tüm durumu bir JSON nesnesi olarak, --format waybar waybar'ın özel modülü için\n"
           "tek satır JSON olarak yazar (class: adhan, kerahat ya da normal). Ramazan günlerinde İmsak\n"
           "\"Sahur\", Akşam \"İftar\" olarak anılır. Yer ve kaynak seçenekleri times komutundakilerle aynıdır.\n\n"
           "Seçenekler:\n"
        + optionTable(choices).help();
}

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err)
{
    if (wantsHelp(args)) {
        out << help();
        return 0;
    }
    const Request request = parse(args, clock);
    const DaysAnswer answer = request.sources.daySource(clock)(days(request), request.location, request.method);
    const Moment now = moment(request, answer);
    switch (request.format) {
    case Format::text:
        if (const auto notice = request.sources.fallbackNotice(answer))
            err << *notice << '\n';
        out << text(now);
        break;
    case Format::json:
        out << json(request, now);
        break;
    case Format::waybar:
        out << waybar(request, now);
        break;
    }
    return 0;
}

} // namespace orvel::cli::StatusCommand
