#include "Location.h"

#include "DecimalText.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace orvel {

Location Location::istanbul()
{
    return {"İstanbul, Fatih", 41.0082, 28.9784, "Europe/Istanbul", GeoPoint{41.0148, 28.9687}};
}

std::string Location::cacheKey() const
{
    return DecimalText::fixed(latitude, 3) + "_" + DecimalText::fixed(longitude, 3);
}

void to_json(nlohmann::json &json, const Location &location)
{
    json = {{"name", location.name},
            {"latitude", location.latitude},
            {"longitude", location.longitude},
            {"timeZoneID", location.timeZoneID}};
    if (location.diyanetPoint)
        json["diyanetPoint"] = {{"latitude", location.diyanetPoint->latitude}, {"longitude", location.diyanetPoint->longitude}};
}

void from_json(const nlohmann::json &json, Location &location)
{
    location.name = json.at("name").get<std::string>();
    location.latitude = json.at("latitude").get<double>();
    location.longitude = json.at("longitude").get<double>();
    location.timeZoneID = json.at("timeZoneID").get<std::string>();
    location.diyanetPoint.reset();
    if (const auto point = json.find("diyanetPoint"); point != json.end() && !point->is_null()) {
        const GeoPoint p{point->at("latitude").get<double>(), point->at("longitude").get<double>()};
        if (std::isfinite(p.latitude) && std::isfinite(p.longitude) && std::fabs(p.latitude) <= 90 && std::fabs(p.longitude) <= 180)
            location.diyanetPoint = p;
    }
}

} // namespace orvel
