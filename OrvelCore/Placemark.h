#pragma once

#include <optional>
#include <string>

namespace orvel {

// What a geocoder tells of a place; every field may be missing.
struct Placemark {
    std::optional<std::string> administrativeArea;    // province or state: "İstanbul"
    std::optional<std::string> subAdministrativeArea; // district or county: "Üsküdar"
    std::optional<std::string> locality;              // town or city
    std::optional<std::string> subLocality;           // quarter
    std::optional<std::string> name;                  // the place's own name
    std::optional<double> latitude;
    std::optional<double> longitude;
    std::optional<std::string> timeZoneID;
    std::optional<std::string> isoCountryCode; // "TR"

    // "İstanbul, Fatih": the province, then the first of district, town and quarter that differs
    // from it; the place's own name when there is neither.
    std::optional<std::string> displayName() const;

    bool operator==(const Placemark &) const = default;
};

} // namespace orvel
