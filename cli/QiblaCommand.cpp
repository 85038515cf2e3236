#include "QiblaCommand.h"

#include "AppSettings.h"
#include "Clock.h"
#include "DecimalText.h"
#include "OrvelFormat.h"
#include "Qibla.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <ostream>

namespace orvel::cli::QiblaCommand {

namespace {

struct Choices {
    PlaceOptions place = AppSettings::placeOptions();
    std::optional<DayKey> date;
    bool json = false;
};

OptionTable optionTable(Choices &choices)
{
    OptionTable table;
    table.add({"--date", "YYYY-AA-GG", "kıble saatinin günü (varsayılan: yerin saat dilimine göre bugün)",
               [&choices](std::string_view value) { choices.date = Values::date(value); }});
    choices.place.addTo(table);
    table.add({"--json", "", "metin yerine JSON yaz", [&choices](std::string_view) { choices.json = true; }});
    return table;
}

struct Figures {
    double bearing;
    double distanceKm;
    std::optional<Instant> qiblaTime;
};

Figures figures(const Request &request)
{
    const Location &place = request.location;
    return {Qibla::bearing(place.latitude, place.longitude), Qibla::distanceKm(place.latitude, place.longitude),
            Qibla::sunInDirection(request.day, place.latitude, place.longitude, place.timeZone())};
}

} // namespace

Request parse(const std::vector<std::string> &args, const Clock &clock)
{
    const Choices choices = parsed(args, optionTable);
    const Location location = choices.place.location();
    return {location, choices.date.value_or(DayKey::from(clock.now(), location.timeZone())), choices.json};
}

std::string text(const Request &request)
{
    const Figures found = figures(request);
    const TimeZone zone = request.location.timeZone();
    std::string out = "Kıble · " + request.location.name + "\n";
    out += "Yön: " + Qibla::bearingText(found.bearing) + ", gerçek kuzeyden saat yönünde\n";
    out += "Kâbe'ye uzaklık: " + Qibla::distanceText(found.distanceKm) + "\n";
    const std::string day = OrvelFormat::longDate(request.day.at(12 * 60, zone), zone);
    if (found.qiblaTime)
        out += "Kıble saati (" + day + "): " + OrvelFormat::time(*found.qiblaTime, zone)
            + "; güneş bu saatte kıble yönündedir\n";
    else
        out += "Kıble saati (" + day + "): yok; güneş bu gün kıble yönüne gelmez\n";
    return out;
}

std::string json(const Request &request)
{
    const Figures found = figures(request);
    const TimeZone zone = request.location.timeZone();
    const nlohmann::ordered_json document{
        {"place", {{"name", request.location.name},
                   {"latitude", request.location.latitude},
                   {"longitude", request.location.longitude},
                   {"timeZone", request.location.timeZoneID}}},
        {"date", request.day.description()},
        {"bearing", std::round(found.bearing * 100) / 100},
        {"compass", Qibla::compassWord(found.bearing)},
        {"distanceKm", std::round(found.distanceKm * 10) / 10},
        {"qiblaTime", found.qiblaTime ? nlohmann::ordered_json(OrvelFormat::time(*found.qiblaTime, zone))
                                      : nlohmann::ordered_json(nullptr)},
    };
    return document.dump(2) + "\n";
}

std::string help()
{
    return usage("qibla [seçenekler]",
                 "Kıbleyi yazar: yerden Kâbe'ye büyük daire üzerindeki yönü (gerçek kuzeyden saat yönünde derece,\n"
                 "pusula adıyla), uzaklığı ve günün kıble saatini (güneşin kıble yönünde durduğu dakika; o gün\n"
                 "güneş kıble yönüne gelmiyorsa yok). Yer verilmezse uygulamada seçili yer kullanılır. Pusula\n"
                 "manyetik kuzeyi gösterir; yerin sapması kadar düzeltin.",
                 optionTable);
}

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &)
{
    const Request request = parse(args, clock);
    out << (request.json ? json(request) : text(request));
    return 0;
}

} // namespace orvel::cli::QiblaCommand
