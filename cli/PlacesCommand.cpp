#include "PlacesCommand.h"

#include "AppSettings.h"
#include "CliOptions.h"
#include "DecimalText.h"
#include "TextTable.h"

#include <nlohmann/json.hpp>

namespace orvel::cli::PlacesCommand {

namespace {

// A search waits no longer than a status bar would.
// After this the device's own list answers: a status bar or a script must not hang on a dead
// geocoder.
constexpr auto searchTimeout = std::chrono::seconds(2);
constexpr auto maxChoice = static_cast<int64_t>(PlaceFinder::resultLimit);

OptionTable optionTable(Request &request)
{
    OptionTable table;
    table.setOperands([&request](std::string_view word) {
        request.query += (request.query.empty() ? "" : " ") + std::string(word);
    });
    table.add({"--choose", "N", "listedeki N. yeri uygulamanın yeri yap (1'den başlar)",
               [&request](std::string_view value) { request.choice = Values::integer(value, "sıra", 1, maxChoice); }});
    table.add({"--json", "", "liste yerine JSON yaz", [&request](std::string_view) { request.json = true; }});
    table.add({"--geocoder", "ADRES", "yer arama servisinin adresi (varsayılan " + std::string(Geocoder::defaultSearchURL) + ")",
               [&request](std::string_view value) { request.searchURL = Values::serviceURL(value); }});
    return table;
}

std::string coordinate(double degrees)
{
    return DecimalText::fixed(degrees, 4);
}

} // namespace

Request parse(const std::vector<std::string> &args)
{
    Request request;
    request.searchURL = std::string(Geocoder::defaultSearchURL);
    optionTable(request).parse(args);
    if (request.query.find_first_not_of(" \t") == std::string::npos)
        throw UsageError("aranacak bir yer adı gerekli (ör. orvel-cli places Üsküdar)");
    return request;
}

std::string table(const std::vector<Location> &places)
{
    std::vector<std::vector<std::string>> rows;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Location &place = places[i];
        rows.push_back({std::to_string(i + 1), place.name, coordinate(place.latitude), coordinate(place.longitude), place.timeZoneID});
    }
    return TextTable::render(rows);
}

std::string json(const PlaceFinder::Search &found)
{
    nlohmann::json places = nlohmann::json::array();
    for (const Location &place : found.places)
        places.push_back(place);
    const nlohmann::json document{{"offline", found.offline}, {"places", places}};
    return document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::string help()
{
    return usage("places YER [seçenekler]",
                 "Adı verilen yeri arar ve bulunanları sıra numarası, ad, enlem, boylam ve saat dilimiyle yazar.\n"
                 "Arama servisine ulaşılamazsa cihazdaki yer listesinden arar. --choose N listedeki N. yeri\n"
                 "uygulamanın yeri yapar: çalışan Orvel onu hemen kullanır, times ve status da onu gösterir.",
                 optionTable);
}

int run(const std::vector<std::string> &args, const Clock &, std::ostream &out, std::ostream &err)
{
    const Request request = parse(args);
    const PlaceFinder finder(Geocoder(request.searchURL, std::string(Geocoder::defaultReverseURL), searchTimeout));
    PlaceFinder::Search found;
    try {
        found = finder.search(request.query);
    } catch (const PlaceFinder::Unavailable &failure) {
        err << PlaceFinder::searchFailed << (*failure.what() ? " " : "") << failure.what() << "\n";
        return 1;
    }
    if (found.places.empty()) {
        err << PlaceFinder::noResults << "\n";
        return 1;
    }
    if (found.offline)
        err << PlaceFinder::offlineResults << "\n";
    if (found.more && !request.choice)
        err << PlaceFinder::moreResults << "\n";

    if (!request.choice) {
        out << (request.json ? json(found) : table(found.places));
        return 0;
    }
    if (*request.choice > static_cast<int64_t>(found.places.size()))
        throw UsageError("geçersiz sıra: " + std::to_string(*request.choice) + " (listede " + std::to_string(found.places.size())
                         + " yer var)");
    const Location &chosen = found.places[static_cast<std::size_t>(*request.choice - 1)];
    if (!AppSettings::choosePlace(chosen)) {
        err << "orvel-cli: yer kaydedilemedi: ayarlar dosyası yazılamıyor\n";
        return 1;
    }
    if (request.json)
        out << nlohmann::json(chosen).dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
    else
        out << "Yer seçildi: " << chosen.name << " (" << coordinate(chosen.latitude) << ", " << coordinate(chosen.longitude)
            << ", " << chosen.timeZoneID << ")\n";
    return 0;
}

} // namespace orvel::cli::PlacesCommand
