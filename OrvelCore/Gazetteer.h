#pragma once

#include "Location.h"
#include "Placemark.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Some 24 000 towns and cities of the world with their states, countries and time zones, on the
// device (Debian's libgeonames): the answer when the online geocoders cannot be reached.
namespace orvel::Gazetteer {

struct Place {
    std::string name;  // "Köln"
    std::string state; // "Kuzey Ren-Vestfalya"
    std::string country;
    std::string timeZoneID;
    double latitude = 0;
    double longitude = 0;

    Placemark placemark() const;
    bool operator==(const Place &) const = default;
};

// The library names places in the language gettext picks for its "geonames" domain; Orvel speaks
// Turkish whatever the desktop's language. Call before any other thread starts.
void speakTurkish();

// Places whose name starts with the text, most populous first.
std::vector<Place> search(std::string_view query);

struct Nearby {
    Place place;
    double kilometres = 0;
};
// The place nearest to a position, if one lies within the distance.
std::optional<Nearby> nearest(double latitude, double longitude, double withinKilometres);

// Great-circle distance on a sphere of the Earth's mean radius.
double kilometresBetween(double latitude1, double longitude1, double latitude2, double longitude2);

} // namespace orvel::Gazetteer
