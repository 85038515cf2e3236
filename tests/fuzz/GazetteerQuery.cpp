// What a user types into the place search, against the device's list of Türkiye.
#include "Gazetteer.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Türkiye's list alone: the world's is the library's, and the same for every query.
    static const orvel::Gazetteer::Index index(orvel::Gazetteer::defaultTurkeyFile(), false);
    const std::string_view query(reinterpret_cast<const char *>(data), size);
    for (const orvel::Gazetteer::Place &place : index.search(query, 5))
        static_cast<void>(place.placemark());
    return 0;
}
