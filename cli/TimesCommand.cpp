#include "TimesCommand.h"

#include "AppSettings.h"
#include "Calendars.h"
#include "CliOptions.h"
#include "Clock.h"
#include "DayJson.h"
#include "OrvelFormat.h"
#include "TextTable.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

namespace orvel::cli::TimesCommand {

namespace {

struct Choices {
    PlaceOptions place = AppSettings::placeOptions();
    DayRangeOptions range{1};
    SourceOptions sources;
    bool json = false;
};

OptionTable optionTable(Choices &choices)
{
    OptionTable table;
    choices.range.addTo(table);
    choices.place.addTo(table);
    choices.sources.addTo(table);
    table.add({"--json", "", "tablo yerine JSON yaz", [&choices](std::string_view) { choices.json = true; }});
    return table;
}

std::string sourceLine(TimesSource source)
{
    return "Kaynak: " + std::string(source.label());
}

} // namespace

Request parse(const std::vector<std::string> &args, const Clock &clock)
{
    const Choices choices = parsed(args, optionTable);
    const TimesQuery query = choices.place.query();
    return {query, choices.range.range(query.location, clock), choices.sources, choices.json};
}

std::string text(const Request &request, const DaysAnswer &answer)
{
    const TimeZone zone = request.location.timeZone();
    std::vector<std::vector<std::string>> rows{{"Tarih", "Hicri"}};
    for (const Prayer::Value prayer : Prayer::all)
        rows.front().emplace_back(Prayer(prayer).name());
    for (const DayTimes &day : answer.days) {
        std::vector<std::string> row{OrvelFormat::pattern(day.day.start(zone), zone, "d MMM EEE"),
                                     day.hijriOrApproximate().formatted()};
        for (const Instant instant : day.times)
            row.push_back(OrvelFormat::time(instant, zone));
        rows.push_back(std::move(row));
    }
    return request.location.name + " · " + std::string(request.method.name()) + "\n\n" + TextTable::render(rows) + "\n"
        + sourceLine(answer.source) + "\n";
}

std::string json(const Request &request, const DaysAnswer &answer)
{
    const TimeZone zone = request.location.timeZone();
    auto days = nlohmann::ordered_json::array();
    for (const DayTimes &day : answer.days)
        days.push_back(dayJson(day, zone));
    const nlohmann::ordered_json document{{"location", nlohmann::ordered_json(nlohmann::json(request.location))},
                                          {"method", request.method.id()},
                                          {"source", answer.source.id()},
                                          {"days", std::move(days)}};
    // A place name given on the command line need not be valid UTF-8.
    return document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::string help()
{
    return usage("times [seçenekler]",
                 "Bir yerin altı vaktini gün gün Türkçe bir tablo olarak ya da --json ile JSON olarak yazar.\n"
                 "Yer verilmezse uygulamada seçili yer ve yöntem (ilk açılışta İstanbul, Fatih ve Diyanet)\n"
                 "kullanılır; yeri orvel-cli places seçer. --lat ile --lon birlikte verilir; o zaman --tz\n"
                 "verilmezse bilgisayarın saat dilimi kullanılır. Saatler yerin saat dilimindedir.\n"
                 "Vakitler web servisinden ay ay alınır ve önbellekte saklanır; servise ulaşılamazsa ya da\n"
                 "--offline verilirse cihazda hesaplanır.",
                 optionTable);
}

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err)
{
    const Request request = parse(args, clock);
    const DaysAnswer answer = request.sources.days(request.range.days(), request, clock);
    if (request.json) {
        out << json(request, answer);
        return 0;
    }
    if (const auto notice = request.sources.fallbackNotice(answer))
        err << *notice << '\n';
    out << text(request, answer);
    return 0;
}

} // namespace orvel::cli::TimesCommand
