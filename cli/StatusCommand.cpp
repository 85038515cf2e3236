#include "StatusCommand.h"

#include "AppSettings.h"
#include "Calendars.h"
#include "Clock.h"
#include "FollowLoop.h"
#include "OrvelFormat.h"
#include "StatusText.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <ostream>
#include <system_error>

namespace orvel::cli::StatusCommand {

namespace {

using OrderedJson = nlohmann::ordered_json;

struct Choices {
    PlaceOptions place = AppSettings::placeOptions();
    SourceOptions sources;
    std::optional<CivilTime> now;
    Format format = Format::text;
    bool follow = false;
};

Format format(std::string_view value)
{
    if (value == "text")
        return Format::text;
    if (value == "json")
        return Format::json;
    if (value == "waybar")
        return Format::waybar;
    if (value == "line")
        return Format::line;
    if (value == "genmon")
        return Format::genmon;
    throw UsageError("geçersiz biçim: " + std::string(value) + " (text, json, waybar, line veya genmon olmalı)");
}

OptionTable optionTable(Choices &choices)
{
    OptionTable table;
    table.add({"--now", "YYYY-AA-GGTSS:dd", "bu an için yaz, yerin saat dilimine göre (varsayılan: şimdi)",
               [&choices](std::string_view value) { choices.now = Values::minute(value); }});
    table.add({"--format", "BİÇİM",
               "text (iki satır), json, waybar, line (yalnız başlık) ya da genmon; varsayılan text",
               [&choices](std::string_view value) { choices.format = format(value); }});
    // The same switch as every other command's, for scripts that pass it to all of them.
    table.add({"--json", "", "--format json ile aynı", [&choices](std::string_view) { choices.format = Format::json; }});
    table.add({"--follow", "", "çalışmayı sürdür, gösterilen değiştikçe yeniden yaz (Orvel açıksa onu izler)",
               [&choices](std::string_view) { choices.follow = true; }});
    choices.place.addTo(table);
    choices.sources.addTo(table);
    return table;
}

OrderedJson isoOrNull(const std::optional<Instant> &instant, const TimeZone &zone)
{
    return instant ? OrderedJson(Calendars::iso8601(*instant, zone)) : OrderedJson(nullptr);
}

std::string waybarClass(const Moment &moment)
{
    switch (moment.state) {
    case StatusLine::State::entry:
        return "adhan";
    case StatusLine::State::kerahat:
        return "kerahat";
    case StatusLine::State::normal:
        break;
    }
    return "normal";
}

// The day's six times and the spoken label.
std::string dayTooltip(const Request &request, const Moment &moment)
{
    const TimeZone zone = request.location.timeZone();
    std::string tooltip;
    for (const Prayer::Value prayer : Prayer::all) {
        tooltip += std::string(Prayer(prayer).displayName(moment.ramadanToday)) + " "
            + OrvelFormat::time(moment.today[prayer], zone) + "\n";
    }
    return tooltip + moment.label;
}

// Text for Pango markup, which the Generic Monitor reads its text and tooltip as; a line break
// becomes a character reference so that the whole answer stays on one line.
std::string markup(const std::string &text)
{
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '\n':
            escaped += "&#10;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::string dump(const OrderedJson &document, int indent)
{
    // A place name given on the command line need not be valid UTF-8.
    return document.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace);
}

// For the Generic Monitor, which splits the command as a shell would.
std::string shellQuoted(const std::string &text)
{
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

} // namespace

Request parse(const std::vector<std::string> &args, const Clock &clock)
{
    const Choices choices = parsed(args, optionTable);
    Request request;
    static_cast<TimesQuery &>(request) = choices.place.query();
    request.status = AppSettings::statusSettings();
    request.sources = choices.sources;
    request.format = choices.format;
    request.follow = choices.follow;
    request.placeGiven = choices.place.given();
    if (request.follow && choices.now)
        throw UsageError("--follow ile --now birlikte kullanılamaz: izlenen an hep şimdidir");
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
    const TimeZone zone = request.location.timeZone();
    // A status bar shows text: the icon-only style still gets its title.
    StatusSettings settings = request.status;
    if (settings.style == TrayStyle::iconOnly)
        settings.style = TrayStyle::nameAndRemaining;
    const StatusFacts facts = StatusText::facts(settings, now, moment.today, moment.tomorrow, zone);
    moment.status = *facts.status;
    moment.kerahat = Kerahat::active(now, StatusText::kerahatIntervals(settings, moment.today));
    moment.ramadanToday = facts.ramadanToday;
    const StatusLine line = StatusText::line(settings.style, facts, zone);
    moment.entryMinute = line.state == StatusLine::State::entry;
    moment.title = line.text;
    moment.label = line.label;
    moment.state = line.state;
    return moment;
}

Moment withWords(Moment moment, const StatusLine &words)
{
    moment.title = words.text;
    moment.label = words.label;
    moment.state = words.state;
    moment.entryMinute = words.state == StatusLine::State::entry;
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
        kerahat = {{"kind", moment.kerahat->kind.id()},
                   {"start", Calendars::iso8601(moment.kerahat->start, zone)},
                   {"end", Calendars::iso8601(moment.kerahat->end, zone)}};
    }
    const OrderedJson document{
        {"current", status.current ? OrderedJson(status.current->id()) : OrderedJson(nullptr)},
        {"currentTime", isoOrNull(status.currentTime, zone)},
        {"next", status.next.id()},
        {"nextTime", Calendars::iso8601(status.nextTime, zone)},
        {"nextIsTomorrow", status.nextIsTomorrow},
        {"dayProgress", status.dayProgress},
        {"minutesRemaining", status.minutesRemaining},
        {"kerahat", std::move(kerahat)},
        {"title", moment.title},
        {"label", moment.label},
        {"location", OrderedJson(nlohmann::json(request.location))},
        {"method", request.method.id()},
        {"source", moment.source.id()},
    };
    return dump(document, request.follow ? -1 : 2) + "\n";
}

std::string waybar(const Request &request, const Moment &moment)
{
    const OrderedJson document{
        {"text", moment.title},
        {"tooltip", dayTooltip(request, moment)},
        {"class", waybarClass(moment)},
        {"alt", moment.status.next.id()},
        {"percentage", static_cast<int>(moment.status.dayProgress * 100)},
    };
    return dump(document, -1) + "\n";
}

std::string line(const Moment &moment)
{
    return moment.title + "\n";
}

std::string genmon(const Request &request, const Moment &moment, const std::string &clickCommand)
{
    return "<txt>" + markup(moment.title) + "</txt><tool>" + markup(dayTooltip(request, moment)) + "</tool><txtclick>"
        + clickCommand + "</txtclick>\n";
}

std::string output(const Request &request, const Moment &moment)
{
    switch (request.format) {
    case Format::text:
        return text(moment);
    case Format::json:
        return json(request, moment);
    case Format::waybar:
        return waybar(request, moment);
    case Format::line:
        return line(moment);
    case Format::genmon:
        return genmon(request, moment, panelCommand());
    }
    return text(moment);
}

std::string panelCommand()
{
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error)
        return "orvel";
    // Installed side by side, or in the build tree's folders.
    for (const std::filesystem::path &candidate : {self.parent_path() / "orvel", self.parent_path().parent_path() / "Orvel" / "orvel"}) {
        if (std::filesystem::is_regular_file(candidate, error))
            return shellQuoted(candidate.string());
    }
    return "orvel";
}

std::string help()
{
    return usage("status [seçenekler]",
                 "Sıradaki vakti ve kalan süreyi durum çubuğundaki gibi yazar: ilk satırda başlık (\"Akşam 1:15\",\n"
                 "bir vakit girdiği dakikada \"Öğle vakti\"), ikinci satırda okunuşu; kerahat vaktinde bunu da söyler.\n"
                 "--format json tüm durumu bir JSON nesnesi olarak, --format waybar waybar'ın özel modülü için\n"
                 "tek satır JSON olarak yazar (class: adhan, kerahat ya da normal); --format line yalnız başlığı\n"
                 "(polybar, i3blocks), --format genmon XFCE'nin Genel İzleyici eklentisi için metni, ipucunu ve\n"
                 "tıklayınca Orvel'in panelini açan komutu yazar. Ramazan günlerinde İmsak \"Sahur\", Akşam\n"
                 "\"İftar\" olarak anılır. Yer ve kaynak seçenekleri times komutundakilerle aynıdır.\n\n"
                 "--follow ile komut açık kalır ve gösterdiği değiştikçe yeni bir satır yazar (text biçimi iki\n"
                 "satır): Orvel çalışıyorsa oturum veri yolundan durumunu izler ve simgesinin söylediğini yazar,\n"
                 "çalışmıyorsa kendi saatine göre her saniye bakar. Yer ya da yöntem verilirse hep kendi saatine bakar.",
                 optionTable);
}

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err)
{
    const Request request = parse(args, clock);
    if (request.follow)
        return FollowLoop::run(request, clock, out);
    const DaysAnswer answer = request.sources.days(days(request), request, clock);
    if (request.format == Format::text) {
        if (const auto notice = request.sources.fallbackNotice(answer))
            err << *notice << '\n';
    }
    out << output(request, moment(request, answer));
    return 0;
}

} // namespace orvel::cli::StatusCommand
