#include "Gazetteer.h"

#include <clocale>
#include <cmath>
#include <cstring>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <numbers>

#include <geonames/geonames.h>
#include <libintl.h>

namespace orvel::Gazetteer {

namespace {

// The library loads its tables on first use and keeps them in globals.
std::mutex libraryMutex;

struct CityDeleter {
    void operator()(GeonamesCity *city) const { geonames_city_free(city); }
};

std::string copy(const gchar *text)
{
    return text ? std::string(text) : std::string();
}

Place place(gint index)
{
    const std::unique_ptr<GeonamesCity, CityDeleter> city(geonames_get_city(index));
    if (!city)
        return {};
    return {copy(geonames_city_get_name(city.get())),         copy(geonames_city_get_state(city.get())),
            copy(geonames_city_get_country(city.get())),      copy(geonames_city_get_timezone(city.get())),
            geonames_city_get_latitude(city.get()),            geonames_city_get_longitude(city.get())};
}

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180;
}

} // namespace

Placemark Place::placemark() const
{
    Placemark mark;
    if (!state.empty())
        mark.administrativeArea = state;
    mark.locality = name;
    mark.name = name;
    mark.latitude = latitude;
    mark.longitude = longitude;
    if (!timeZoneID.empty())
        mark.timeZoneID = timeZoneID;
    return mark;
}

void speakTurkish()
{
    setenv("LANGUAGE", "tr", 1);
    // gettext ignores LANGUAGE in the C locale, and would squeeze the names into its ASCII.
    const char *messages = std::setlocale(LC_MESSAGES, nullptr);
    if (!messages || std::strcmp(messages, "C") == 0 || std::strcmp(messages, "POSIX") == 0)
        std::setlocale(LC_MESSAGES, "C.UTF-8");
    bind_textdomain_codeset("geonames", "UTF-8");
}

std::vector<Place> search(std::string_view query)
{
    const std::string text(query);
    const std::lock_guard lock(libraryMutex);
    guint count = 0;
    std::unique_ptr<gint, decltype(&g_free)> indices(
        geonames_query_cities_sync(text.c_str(), GEONAMES_QUERY_DEFAULT, &count, nullptr, nullptr), &g_free);
    std::vector<Place> places;
    if (!indices)
        return places;
    places.reserve(count);
    for (guint i = 0; i < count; ++i)
        places.push_back(place(indices.get()[i]));
    return places;
}

std::optional<Nearby> nearest(double latitude, double longitude, double withinKilometres)
{
    const std::lock_guard lock(libraryMutex);
    std::optional<gint> bestIndex;
    double bestDistance = withinKilometres;
    const gint count = geonames_get_n_cities();
    for (gint i = 0; i < count; ++i) {
        const std::unique_ptr<GeonamesCity, CityDeleter> city(geonames_get_city(i));
        if (!city)
            continue;
        const double distance = kilometresBetween(latitude, longitude, geonames_city_get_latitude(city.get()),
                                                  geonames_city_get_longitude(city.get()));
        if (distance <= bestDistance) {
            bestIndex = i;
            bestDistance = distance;
        }
    }
    if (!bestIndex)
        return std::nullopt;
    return Nearby{place(*bestIndex), bestDistance};
}

double kilometresBetween(double latitude1, double longitude1, double latitude2, double longitude2)
{
    constexpr double earthRadius = 6371.0088;
    const double dLatitude = radians(latitude2 - latitude1);
    const double dLongitude = radians(longitude2 - longitude1);
    const double a = std::pow(std::sin(dLatitude / 2), 2)
        + std::cos(radians(latitude1)) * std::cos(radians(latitude2)) * std::pow(std::sin(dLongitude / 2), 2);
    return 2 * earthRadius * std::asin(std::min(1.0, std::sqrt(a)));
}

} // namespace orvel::Gazetteer
