#pragma once

#include "Location.h"
#include "Placemark.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The places Orvel knows without the network: every province and district of Türkiye from
// Orvel's own data file (with Diyanet's point of each where known), and some 24 000 towns and
// cities of the world from Debian's libgeonames, in Turkish. The answer when the online
// geocoders cannot be reached, and the names and zones of positions.
namespace orvel::Gazetteer {

struct Place {
    std::string name;  // "Kadıköy"; a province centre: the province
    std::string state; // "İstanbul"; abroad the region, empty where it has only an English name
    std::string country;
    std::string timeZoneID;
    double latitude = 0;
    double longitude = 0;
    int64_t population = 0;
    std::optional<GeoPoint> diyanetPoint;
    std::string countryCode; // "TR"

    Placemark placemark() const;
    bool operator==(const Place &) const = default;
};

// Lower case without accents, Turkish-aware: "KADIKÖY", "Kadıköy" and "kadikoy" all give "kadikoy".
std::string fold(std::string_view text);

// The places and their search keys, built once.
class Index {
public:
    // Türkiye from the data file; the world from libgeonames unless `withWorld` is false.
    explicit Index(const std::filesystem::path &turkeyFile, bool withWorld = true);
    ~Index();
    Index(const Index &) = delete;
    Index &operator=(const Index &) = delete;

    // Empty when the data file was read; else why not, in Turkish.
    const std::string &problem() const;
    size_t size() const;

    // Places every word of the query begins a word of (name, province, country), exact names
    // first, then names that begin with the query, then the rest; within each, the most populous.
    std::vector<Place> search(std::string_view query, size_t limit = 20) const;
    std::optional<std::pair<Place, double>> nearest(double latitude, double longitude, double withinKilometres) const;

private:
    struct Data;
    std::unique_ptr<Data> data_;
};

// Orvel's data file: beside the program (../share/orvel, or above it in the build tree) or where
// it is installed.
std::filesystem::path defaultTurkeyFile();
// The index of the default file, built on first use (call it off the UI thread).
const Index &defaultIndex();

// The library names places in the language gettext picks for its "geonames" domain; Orvel speaks
// Turkish whatever the desktop's language. Call before any other thread starts.
void speakTurkish();

std::vector<Place> search(std::string_view query);

struct Nearby {
    Place place;
    double kilometres = 0;
};
// The place nearest to a position, if one lies within the distance.
std::optional<Nearby> nearest(double latitude, double longitude, double withinKilometres);
// Diyanet's point for a position in Türkiye: that of the nearest district within reach.
std::optional<GeoPoint> diyanetPointNear(double latitude, double longitude);

// Great-circle distance on a sphere of the Earth's mean radius.
double kilometresBetween(double latitude1, double longitude1, double latitude2, double longitude2);

} // namespace orvel::Gazetteer
