#include "ImsakiyeCommand.h"

#include "AppSettings.h"
#include "Calendars.h"
#include "Clock.h"
#include "DayJson.h"
#include "TextTable.h"

#include <nlohmann/json.hpp>
#include <ostream>

namespace orvel::cli::ImsakiyeCommand {

namespace {

using OrderedJson = nlohmann::ordered_json;

// Far enough for any timetable anyone prints: a century of months.
constexpr int64_t maxOffset = 1200;
constexpr std::string_view todayMark = "*";

struct Choices {
    PlaceOptions place = AppSettings::placeOptions();
    ImsakiyeMode mode = ImsakiyeMode::month;
    int64_t offset = 0;
    std::optional<DayKey> date;
    SourceOptions sources;
    bool json = false;
};

// The English names and the Turkish words alike.
ImsakiyeMode mode(std::string_view value)
{
    if (const auto mode = ImsakiyeMode::fromId(value))
        return *mode;
    if (value == "hafta")
        return ImsakiyeMode::week;
    if (value == "ay")
        return ImsakiyeMode::month;
    if (value == "ramazan" || value == "Ramazan")
        return ImsakiyeMode::ramadan;
    throw UsageError("geçersiz sayfa: " + std::string(value) + " (week/hafta, month/ay veya ramadan/ramazan olmalı)");
}

OptionTable optionTable(Choices &choices)
{
    OptionTable table;
    table.add({"--mode", "SAYFA", "week ya da hafta, month ya da ay, ramadan ya da ramazan; varsayılan month",
               [&choices](std::string_view value) { choices.mode = mode(value); }});
    table.add({"--offset", "N", "kaç sayfa sonrası (+) ya da öncesi (−); varsayılan 0, bu hafta, ay ya da Ramazan",
               [&choices](std::string_view value) {
                   choices.offset = Values::integer(value, "sayfa farkı", -maxOffset, maxOffset);
               }});
    table.add({"--date", "YYYY-AA-GG", "bugün yerine bu gün (varsayılan: yerin saat dilimine göre bugün)",
               [&choices](std::string_view value) { choices.date = Values::date(value); }});
    choices.place.addTo(table);
    choices.sources.addTo(table);
    table.add({"--json", "", "tablo yerine JSON yaz", [&choices](std::string_view) { choices.json = true; }});
    return table;
}

std::string notices(const std::vector<DayTimes> &days)
{
    std::string text;
    for (const std::string_view notice : Imsakiye::notices(days))
        text += std::string(notice) + "\n";
    return text;
}

std::string sourceLine(TimesSource source)
{
    return "Kaynak: " + std::string(source.label());
}

std::vector<std::vector<std::string>> table(const ImsakiyePage &page, const std::vector<Imsakiye::Row> &rows)
{
    std::vector<std::string> heading{"", "Tarih", std::string(Imsakiye::hijriHeading(page.mode))};
    std::vector<std::string> second{"", "", ""};
    bool hasSecond = false;
    for (const Prayer::Value prayer : Prayer::all) {
        heading.emplace_back(Prayer(prayer).name());
        const auto below = Imsakiye::secondHeading(page.mode, prayer);
        second.emplace_back(below.value_or(""));
        hasSecond = hasSecond || below.has_value();
    }
    heading.emplace_back("Not");
    std::vector<std::vector<std::string>> cells{heading};
    if (hasSecond)
        cells.push_back(second);
    for (const Imsakiye::Row &row : rows) {
        std::vector<std::string> line{row.isToday ? std::string(todayMark) : "", row.date, row.hijri};
        line.insert(line.end(), row.times.begin(), row.times.end());
        line.push_back(row.note.value_or(""));
        cells.push_back(std::move(line));
    }
    return cells;
}

} // namespace

Request parse(const std::vector<std::string> &args, const Clock &clock)
{
    const Choices choices = parsed(args, optionTable);
    const TimesQuery query = choices.place.query();
    const DayKey today = choices.date.value_or(DayKey::from(clock.now(), query.location.timeZone()));
    return {query, choices.mode, choices.offset, today, choices.sources, choices.json};
}

Page load(const Request &request, const DaySource &source)
{
    const DaysAnswer today = source({request.today}, request.location, request.method, request.times);
    Page page;
    page.page = {request.mode, request.offset, request.today, today.days.at(0)};
    const DaysAnswer answer = source(Imsakiye::keys(page.page), request.location, request.method, request.times);
    page.days = Imsakiye::pageDays(page.page, answer.days);
    page.source = answer.source;
    return page;
}

std::string text(const Request &request, const Page &page)
{
    const TimeZone zone = request.location.timeZone();
    const std::vector<Imsakiye::Row> rows = Imsakiye::rows(page.page, page.days, zone);
    return Imsakiye::title(page.page, page.days, zone) + "\n" + Imsakiye::placeLine(request.location, request.method)
        + "\n\n" + TextTable::render(table(page.page, rows)) + "\n" + notices(page.days)
        + sourceLine(page.source) + "\n";
}

std::string json(const Request &request, const Page &page)
{
    const TimeZone zone = request.location.timeZone();
    auto days = OrderedJson::array();
    const std::vector<Imsakiye::Row> rows = Imsakiye::rows(page.page, page.days, zone);
    for (size_t i = 0; i < rows.size(); ++i) {
        const Imsakiye::Row &row = rows[i];
        // The day as `times` writes it, and what the page adds to it.
        OrderedJson day = dayJson(page.days[i], zone);
        day["note"] = row.note ? OrderedJson(*row.note) : OrderedJson(nullptr);
        day["today"] = row.isToday;
        day["past"] = row.isPast;
        days.push_back(std::move(day));
    }
    OrderedJson document{
        {"mode", page.page.mode.id()},
        {"offset", page.page.offset},
        {"title", Imsakiye::title(page.page, page.days, zone)},
    };
    if (page.page.mode == ImsakiyeMode::ramadan)
        document["hijriYear"] = Imsakiye::hijriYear(page.page);
    document["location"] = OrderedJson(nlohmann::json(request.location));
    document["method"] = request.method.id();
    document["source"] = page.source.id();
    document["days"] = std::move(days);
    // A place name given on the command line need not be valid UTF-8.
    return document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::string help()
{
    return usage("imsakiye [seçenekler]",
                 "Uygulamanın İmsakiye penceresindeki sayfayı yazar: başlık, yer ve yöntem, sonra her gün için\n"
                 "tarih, Hicri tarih, altı vakit ve günün dini günü (kandiller, Ramazan başlangıcı, Kadir Gecesi,\n"
                 "arefeler, bayramlar); bugünün satırı * ile işaretlidir. Hafta pazartesiden pazara, ay takvim ayı\n"
                 "kadardır; Ramazan sayfası Ramazan ayının günlerini gösterir, bu yılın Ramazanı bittiyse gelecek\n"
                 "yılınkini. --offset ile önceki ve sonraki sayfalara geçilir. Yer, yöntem ve kaynak seçenekleri\n"
                 "times komutundakilerle aynıdır.",
                 optionTable);
}

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err)
{
    const Request request = parse(args, clock);
    const Page page = load(request, request.sources.daySource(clock));
    if (request.json) {
        out << json(request, page);
        return 0;
    }
    if (const auto notice = request.sources.fallbackNotice(DaysAnswer{page.days, page.source}))
        err << *notice << '\n';
    out << text(request, page);
    return 0;
}

} // namespace orvel::cli::ImsakiyeCommand
