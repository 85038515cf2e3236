#include "Placemark.h"

#include <array>

namespace orvel {

std::optional<std::string> Placemark::displayName() const
{
    const std::optional<std::string> &province = administrativeArea;
    std::optional<std::string> detail;
    for (const auto *candidate : std::array{&subAdministrativeArea, &locality, &subLocality}) {
        if (*candidate && *candidate != province) {
            detail = *candidate;
            break;
        }
    }
    if (province && detail)
        return *province + ", " + *detail;
    if (province)
        return province;
    if (detail)
        return detail;
    return name;
}

} // namespace orvel
