#include "Location.h"

#include "DecimalText.h"

#include <cctype>
#include <cmath>
#include <nlohmann/json.hpp>

namespace orvel {

namespace {

// Two ASCII letters, upper-cased; anything else stands for an unknown country.
std::string countryCodeOrEmpty(std::string code)
{
    if (code.size() != 2 || !std::isalpha(static_cast<unsigned char>(code[0])) || !std::isalpha(static_cast<unsigned char>(code[1])))
        return {};
    for (char &c : code)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return code;
}

} // namespace

Location Location::istanbul()
{
    return {"İstanbul, Fatih", 41.0082, 28.9784, "Europe/Istanbul", GeoPoint{41.0148, 28.9687}, "TR"};
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
    if (!location.countryCode.empty())
        json["countryCode"] = location.countryCode;
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
    location.countryCode.clear();
    if (const auto code = json.find("countryCode"); code != json.end() && code->is_string())
        location.countryCode = countryCodeOrEmpty(code->get<std::string>());
}

} // namespace orvel
