#include "DaysCommand.h"

#include "AppSettings.h"
#include "CliOptions.h"
#include "Clock.h"
#include "OrvelFormat.h"
#include "TextTable.h"
#include "TimeZone.h"

#include <nlohmann/json.hpp>
#include <ostream>

namespace orvel::cli::DaysCommand {

namespace {

std::string_view kindId(ReligiousDay::Kind kind)
{
    switch (kind) {
    case ReligiousDay::Kind::night:
        return "night";
    case ReligiousDay::Kind::bayram:
        return "bayram";
    case ReligiousDay::Kind::arefe:
        return "arefe";
    case ReligiousDay::Kind::day:
        break;
    }
    return "day";
}

OptionTable optionTable(Request &request)
{
    OptionTable table;
    table.add({"--year", "YYYY", "yıl (varsayılan: bu yıl)", [&request](std::string_view value) {
                   request.year = Values::integer(value, "yıl", Values::firstSupportedYear, Values::lastSupportedYear);
               }});
    table.add({"--method", "YÖNTEM", "takvimin yöntemi: diyanet Diyanet'in takvimi, diğerleri Ümmü'l-Kura",
               [&request](std::string_view value) { request.method = Values::method(value); }});
    table.add({"--json", "", "tablo yerine JSON yaz", [&request](std::string_view) { request.json = true; }});
    return table;
}

} // namespace

Request parse(const std::vector<std::string> &args, const Clock &clock)
{
    const PlaceOptions stored = AppSettings::placeOptions();
    Request request;
    request.method = stored.method;
    request.hijriCorrection = stored.times.hijriCorrection;
    optionTable(request).parse(args);
    if (request.year == 0)
        request.year = DayKey::from(clock.now(), TimeZone::current()).year;
    return request;
}

std::string text(const Request &request, const std::vector<ReligiousDay> &days)
{
    const TimeZone utc = TimeZone::utc();
    std::vector<std::vector<std::string>> rows{{"Tarih", "Hicri", "Dini gün"}};
    for (const ReligiousDay &day : days)
        rows.push_back({OrvelFormat::longDate(day.date.at(12 * 60, utc), utc), day.hijri.formatted(), day.name});
    return std::to_string(request.year) + " yılının dini günleri · " + std::string(request.method.shortName()) + "\n"
        + TextTable::render(rows) + "Kandiller ve Kadir Gecesi, gecenin başladığı akşamın tarihindedir.\n";
}

std::string json(const Request &request, const std::vector<ReligiousDay> &days)
{
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const ReligiousDay &day : days)
        list.push_back({{"date", day.date.description()},
                        {"name", day.name},
                        {"kind", kindId(day.kind)},
                        {"hijri", {{"day", day.hijri.day}, {"month", day.hijri.month}, {"year", day.hijri.year}}}});
    nlohmann::ordered_json document{{"year", request.year}, {"method", request.method.id()}, {"days", list}};
    return document.dump(2) + "\n";
}

std::string help()
{
    return usage("days [seçenekler]",
                 "Bir yılın dini günlerini ve gecelerini Diyanet'in yayımladığı gibi yazar: üç ayların başlangıcı,\n"
                 "Regaib, Miraç, Berat ve Mevlid kandilleri, Ramazan başlangıcı, Kadir Gecesi, bayramlar ve\n"
                 "arefeleri, Hicri yılbaşı ve Aşure günü. Tarihler yöntemin Hicri takviminden cihazda hesaplanır\n"
                 "(Diyanet için Diyanet'in takvimi, diğer yöntemler için Ümmü'l-Kura) ve uygulamadaki Hicri\n"
                 "düzeltmeyle kayar. Bir kandil, gecenin başladığı akşamın tarihinde yazılır.",
                 optionTable);
}

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &)
{
    const Request request = parse(args, clock);
    const std::vector<ReligiousDay> days = ReligiousDays::inYear(request.year, request.method, request.hijriCorrection);
    out << (request.json ? json(request, days) : text(request, days));
    return 0;
}

} // namespace orvel::cli::DaysCommand
