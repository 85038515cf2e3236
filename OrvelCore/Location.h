#pragma once

#include "TimeZone.h"

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace orvel {

struct GeoPoint {
    double latitude = 0;
    double longitude = 0;

    bool operator==(const GeoPoint &) const = default;
};

// The place whose times are shown.
struct Location {
    std::string name;
    double latitude = 0;  // degrees, north positive
    double longitude = 0; // degrees, east positive
    std::string timeZoneID;
    // Where Diyanet computes this place's times, when it is one of Diyanet's places.
    std::optional<GeoPoint> diyanetPoint;
    // ISO 3166 code of the place's country ("TR", "DE"); empty when not known, and then the zone
    // tells Türkiye from abroad.
    std::string countryCode;

    static Location istanbul();

    // The zone of timeZoneID, or the machine's current zone when it names none.
    TimeZone timeZone() const { return TimeZone::named(timeZoneID); }
    std::string cacheKey() const; // "41.008_28.978"
    GeoPoint diyanetPointOrOwn() const { return diyanetPoint.value_or(GeoPoint{latitude, longitude}); }

    bool operator==(const Location &) const = default;
};

void to_json(nlohmann::json &json, const Location &location);
void from_json(const nlohmann::json &json, Location &location);

} // namespace orvel
