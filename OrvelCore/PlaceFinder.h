#pragma once

#include "Geocoder.h"
#include "Location.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvel {

// Turns a place name, or a position, into Locations: through the online geocoders when they
// answer, else from the gazetteer on the device. Blocking: call it off the UI thread.
class PlaceFinder {
public:
    static constexpr auto fallbackName = "Konumum";
    // What a search says, in the application and on the command line alike.
    static constexpr auto noResults = "Sonuç bulunamadı.";
    // The device's list was searched and knows no such place; the online search could not be asked.
    static constexpr auto searchFailed = "Cihazdaki yer listesinde bulunamadı; çevrimiçi aramaya ulaşılamadı.";
    static constexpr auto offlineResults = "Arama servisine ulaşılamadı; bu liste cihazdaki yer listesinden.";
    // The most places a search gives, online and offline alike.
    static constexpr size_t resultLimit = 20;
    static constexpr auto moreResults = "Yalnız ilk 20 sonuç gösteriliyor; aradığınız yoksa adı ilçesiyle ya da iliyle "
                                       "birlikte yazın (örn. \"İstanbul Kadıköy\").";
    // How far the gazetteer may look for a position's name, and for its time zone.
    static constexpr double namingKilometres = 50;
    static constexpr double zoneKilometres = 300;

    struct Search {
        std::vector<Location> places;
        bool offline = false; // from the gazetteer, the geocoder having failed
        bool more = false;    // places were left out past resultLimit

        bool operator==(const Search &) const = default;
    };

    explicit PlaceFinder(Geocoder geocoder = Geocoder());

    // Neither the geocoder nor the gazetteer could answer; what() is the gazetteer's own problem
    // in Turkish (its data file missing or damaged), else empty.
    class Unavailable : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    // Places matching the text, one per name. When the geocoder fails or knows none, the gazetteer
    // answers; when the geocoder failed and the gazetteer knows nothing either, throws Unavailable.
    Search search(std::string_view query) const;
    // The position named as a place. Never throws: an unnamed position is "Konumum".
    Location locate(double latitude, double longitude) const;

    // Placemarks as Locations in their order: without a position they are left out; without a
    // name they take the query; a name already given is not repeated; without a zone they take
    // `fallbackZone`.
    static std::vector<Location> locations(const std::vector<Placemark> &placemarks, std::string_view query,
                                           const std::string &fallbackZone);

private:
    Geocoder geocoder_;
};

} // namespace orvel
