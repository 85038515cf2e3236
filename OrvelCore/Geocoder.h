#pragma once

#include "Placemark.h"

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvel {

// Place names to positions and back, through two public web services: Open-Meteo's geocoding
// (GeoNames places with Turkish names and their time zones) and Nominatim's reverse geocoding.
// Failures are thrown: Http::TransportError, Http::StatusError, or the JSON decoder's errors.
class Geocoder {
public:
    static constexpr std::string_view defaultSearchURL = "https://geocoding-api.open-meteo.com/v1/search";
    static constexpr std::string_view defaultReverseURL = "https://nominatim.openstreetmap.org/reverse";

    explicit Geocoder(std::string searchURL = std::string(defaultSearchURL),
                      std::string reverseURL = std::string(defaultReverseURL),
                      std::chrono::milliseconds timeout = std::chrono::seconds(15));

    // Up to twenty places matching the text, best first.
    std::vector<Placemark> search(std::string_view query) const;
    // The place at a position, at district level; empty when the service knows none. At most one
    // request a second leaves this object, as the service asks.
    std::vector<Placemark> reverse(double latitude, double longitude) const;

    std::string searchRequestURL(std::string_view query) const;
    std::string reverseRequestURL(double latitude, double longitude) const;

    // A body without "results" has no hits.
    static std::vector<Placemark> parseSearch(std::string_view body);
    // A body with "error" has no place.
    static std::vector<Placemark> parseReverse(std::string_view body);

private:
    struct Pacing;

    std::string searchURL_;
    std::string reverseURL_;
    std::chrono::milliseconds timeout_;
    std::shared_ptr<Pacing> pacing_;
};

} // namespace orvel
