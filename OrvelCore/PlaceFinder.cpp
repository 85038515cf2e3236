#include "PlaceFinder.h"

#include "Gazetteer.h"
#include "TimeZone.h"

#include <algorithm>
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
        result.push_back({name, *mark.latitude, *mark.longitude, mark.timeZoneID.value_or(fallbackZone)});
    }
    return result;
}

PlaceFinder::Search PlaceFinder::search(std::string_view query) const
{
    bool failed = false;
    try {
        std::vector<Location> online = locations(geocoder_.search(query), query, machineZone());
        if (!online.empty())
            return {withDiyanetPoints(std::move(online)), false};
    } catch (const std::exception &) {
        failed = true;
    }
    std::vector<Location> offline = locations(placemarks(Gazetteer::search(query)), query, machineZone());
    if (offline.empty() && failed)
        throw Unavailable(Gazetteer::defaultIndex().problem());
    return {withDiyanetPoints(std::move(offline)), failed};
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
        return {mark.displayName().value_or(fallbackName), latitude, longitude, mark.timeZoneID.value_or(machineZone()),
                Gazetteer::diyanetPointNear(latitude, longitude)};
    }
    const std::optional<std::string> name = found.empty() ? std::nullopt : found.front().displayName();
    // The reverse service gives no zone: the nearest known town's, as long as it is not far.
    const auto zoned = Gazetteer::nearest(latitude, longitude, zoneKilometres);
    return {name.value_or(fallbackName), latitude, longitude, zoned ? zoned->place.timeZoneID : machineZone(),
            Gazetteer::diyanetPointNear(latitude, longitude)};
}

} // namespace orvel
