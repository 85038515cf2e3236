#include "JsonValues.h"

#include <limits>
#include <nlohmann/json.hpp>
#include <string>

namespace orvel::JsonValues {

int64_t integer(const nlohmann::json &value)
{
    const bool tooLarge = value.is_number_unsigned()
        && value.get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    if (!value.is_number_integer() || tooLarge) {
        throw nlohmann::json::type_error::create(
            302, std::string("type must be a 64-bit integer, but is ") + value.type_name(), &value);
    }
    return value.get<int64_t>();
}

int64_t integer(const nlohmann::json &object, const char *key)
{
    return integer(object.at(key));
}

} // namespace orvel::JsonValues
