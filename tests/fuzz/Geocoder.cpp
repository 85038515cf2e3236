// The geocoder's search answer and the reverse geocoder's answer.
#include "Geocoder.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string_view body(reinterpret_cast<const char *>(data), size);
    for (const auto parse : {&orvel::Geocoder::parseSearch, &orvel::Geocoder::parseReverse}) {
        try {
            for (const orvel::Placemark &mark : parse(body))
                static_cast<void>(mark.displayName());
        } catch (const std::exception &) {
        }
    }
    return 0;
}
