#include "PlaceFinder.h"

#include "Gazetteer.h"
#include "TimeZone.h"

#include <algorithm>
#include <cctype>
#include <exception>

namespace orvel {

namespace {

std::string machineZone()
{
    return TimeZone::current().id();
}

std::vector<Placemark> placemarks(const std::vector<Gazetteer::Place> &places)
{
    std::vector<Placemark> marks;
    marks.reserve(places.size());
    for (const Gazetteer::Place &place : places)
        marks.push_back(place.placemark());
    return marks;
}

std::string countryCode(const Placemark &mark)
{
    std::string code = mark.isoCountryCode.value_or("");
    for (char &c : code)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return code.size() == 2 ? code : std::string();
}

// Places of Türkiye are computed, for Diyanet, at the point where Diyanet computes them.
std::vector<Location> withDiyanetPoints(std::vector<Location> locations)
{
    for (Location &location : locations)
        location.diyanetPoint = Gazetteer::diyanetPointNear(location.latitude, location.longitude);
    return locations;
}

} // namespace

PlaceFinder::PlaceFinder(Geocoder geocoder)
    : geocoder_(std::move(geocoder))
{
}

std::vector<Location> PlaceFinder::locations(const std::vector<Placemark> &placemarks, std::string_view query,
                                             const std::string &fallbackZone)
{
    std::vector<Location> result;
    for (const Placemark &mark : placemarks) {
        if (!mark.latitude || !mark.longitude)
            continue;
        const std::string name = mark.displayName().value_or(std::string(query));
        const bool known = std::ranges::any_of(result, [&](const Location &location) { return location.name == name; });
        if (known)
            continue;
        Location location{name, *mark.latitude, *mark.longitude, mark.timeZoneID.value_or(fallbackZone)};
        location.countryCode = countryCode(mark);
        result.push_back(std::move(location));
    }
    return result;
}

PlaceFinder::Search PlaceFinder::search(std::string_view query) const
{
    bool failed = false;
    try {
        const std::vector<Placemark> marks = geocoder_.search(query);
        std::vector<Location> online = locations(marks, query, machineZone());
        if (!online.empty())
            return {withDiyanetPoints(std::move(online)), false, marks.size() >= resultLimit};
    } catch (const std::exception &) {
        failed = true;
    }
    // One more than is shown tells whether any were left out.
    std::vector<Gazetteer::Place> known = Gazetteer::defaultIndex().search(query, resultLimit + 1);
    const bool more = known.size() > resultLimit;
    known.resize(std::min(known.size(), resultLimit));
    std::vector<Location> offline = locations(placemarks(known), query, machineZone());
    if (offline.empty() && failed)
        throw Unavailable(Gazetteer::defaultIndex().problem());
    return {withDiyanetPoints(std::move(offline)), failed, more};
}

Location PlaceFinder::locate(double latitude, double longitude) const
{
    std::vector<Placemark> found;
    try {
        found = geocoder_.reverse(latitude, longitude);
    } catch (const std::exception &) {
        // Named from the gazetteer below, when a place is near enough.
        const auto near = Gazetteer::nearest(latitude, longitude, namingKilometres);
        const Placemark mark = near ? near->place.placemark() : Placemark();
        const auto country = Gazetteer::nearest(latitude, longitude, zoneKilometres);
        return {mark.displayName().value_or(fallbackName), latitude, longitude, mark.timeZoneID.value_or(machineZone()),
                Gazetteer::diyanetPointNear(latitude, longitude), country ? country->place.countryCode : std::string()};
    }
    const std::optional<std::string> name = found.empty() ? std::nullopt : found.front().displayName();
    // The reverse service gives no zone: the nearest known town's, as long as it is not far.
    const auto zoned = Gazetteer::nearest(latitude, longitude, zoneKilometres);
    std::string country = found.empty() ? std::string() : countryCode(found.front());
    if (country.empty() && zoned)
        country = zoned->place.countryCode;
    return {name.value_or(fallbackName), latitude, longitude, zoned ? zoned->place.timeZoneID : machineZone(),
            Gazetteer::diyanetPointNear(latitude, longitude), country};
}

} // namespace orvel
