#include "Geocoder.h"

#include "DecimalText.h"
#include "HttpGet.h"

#include <mutex>
#include <thread>

#include <nlohmann/json.hpp>

namespace orvel {

namespace {

using nlohmann::json;

// A text field, none when missing, empty or not text.
std::optional<std::string> text(const json &object, const char *key)
{
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string() || found->get_ref<const std::string &>().empty())
        return std::nullopt;
    return found->get<std::string>();
}

std::optional<std::string> firstText(const json &object, std::initializer_list<const char *> keys)
{
    for (const char *key : keys) {
        if (auto value = text(object, key))
            return value;
    }
    return std::nullopt;
}

// A coordinate given as a number (Open-Meteo) or as decimal text (Nominatim).
std::optional<double> coordinate(const json &object, const char *key)
{
    const auto found = object.find(key);
    if (found == object.end())
        return std::nullopt;
    if (found->is_number())
        return found->get<double>();
    if (found->is_string())
        return DecimalText::parse(found->get_ref<const std::string &>());
    return std::nullopt;
}

} // namespace

struct Geocoder::Pacing {
    std::mutex mutex;
    std::chrono::steady_clock::time_point last{};
};

Geocoder::Geocoder(std::string searchURL, std::string reverseURL, std::chrono::milliseconds timeout)
    : searchURL_(std::move(searchURL))
    , reverseURL_(std::move(reverseURL))
    , timeout_(timeout)
    , pacing_(std::make_shared<Pacing>())
{
}

std::string Geocoder::searchRequestURL(std::string_view query) const
{
    return searchURL_ + "?name=" + Http::queryValue(query) + "&count=20&language=tr&format=json";
}

std::string Geocoder::reverseRequestURL(double latitude, double longitude) const
{
    return reverseURL_ + "?format=jsonv2&accept-language=tr&zoom=12&lat=" + DecimalText::fixed(latitude, 5)
        + "&lon=" + DecimalText::fixed(longitude, 5);
}

std::vector<Placemark> Geocoder::search(std::string_view query) const
{
    return parseSearch(Http::get(searchRequestURL(query), timeout_));
}

std::vector<Placemark> Geocoder::reverse(double latitude, double longitude) const
{
    {
        std::lock_guard lock(pacing_->mutex);
        const auto due = pacing_->last + std::chrono::seconds(1);
        std::this_thread::sleep_until(due);
        pacing_->last = std::chrono::steady_clock::now();
    }
    return parseReverse(Http::get(reverseRequestURL(latitude, longitude), timeout_));
}

std::vector<Placemark> Geocoder::parseSearch(std::string_view body)
{
    const json document = json::parse(body);
    std::vector<Placemark> places;
    const auto results = document.find("results");
    if (results == document.end())
        return places;
    for (const json &result : results->get_ref<const json::array_t &>()) {
        Placemark place;
        place.administrativeArea = text(result, "admin1");
        place.locality = text(result, "name");
        place.name = text(result, "name");
        place.latitude = coordinate(result, "latitude");
        place.longitude = coordinate(result, "longitude");
        place.timeZoneID = text(result, "timezone");
        place.isoCountryCode = text(result, "country_code");
        places.push_back(std::move(place));
    }
    return places;
}

std::vector<Placemark> Geocoder::parseReverse(std::string_view body)
{
    const json document = json::parse(body);
    if (!document.is_object() || document.contains("error"))
        return {};
    const json empty = json::object();
    const auto address = document.find("address");
    const json &parts = address != document.end() && address->is_object() ? *address : empty;
    Placemark place;
    place.administrativeArea = firstText(parts, {"province", "state"});
    place.subAdministrativeArea = firstText(parts, {"county", "city_district"});
    place.locality = firstText(parts, {"city", "town", "village"});
    place.subLocality = text(parts, "suburb");
    place.isoCountryCode = text(parts, "country_code");
    place.name = text(document, "name");
    place.latitude = coordinate(document, "lat");
    place.longitude = coordinate(document, "lon");
    return {place};
}

} // namespace orvel
