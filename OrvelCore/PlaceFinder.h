#pragma once

#include "Geocoder.h"
#include "Location.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvel {

// Turns a place name, or a position, into Locations: through the online geocoders when they
// answer, else from the gazetteer on the device. Blocking: call it off the UI thread.
class PlaceFinder {
public:
    static constexpr auto fallbackName = "Konumum";
    // How far the gazetteer may look for a position's name, and for its time zone.
    static constexpr double namingKilometres = 50;
    static constexpr double zoneKilometres = 300;

    struct Search {
        std::vector<Location> places;
        bool offline = false; // from the gazetteer

        bool operator==(const Search &) const = default;
    };

    explicit PlaceFinder(Geocoder geocoder = Geocoder());

    // Places matching the text, one per name. When the geocoder fails, the gazetteer answers; when
    // it knows nothing either, the geocoder's failure is thrown.
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
