#include "Location.h"

#include "DecimalText.h"

#include <nlohmann/json.hpp>

namespace orvel {

Location Location::istanbul()
{
    return {"İstanbul, Fatih", 41.0082, 28.9784, "Europe/Istanbul"};
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
}

void from_json(const nlohmann::json &json, Location &location)
{
    location.name = json.at("name").get<std::string>();
    location.latitude = json.at("latitude").get<double>();
    location.longitude = json.at("longitude").get<double>();
    location.timeZoneID = json.at("timeZoneID").get<std::string>();
}

} // namespace orvel
