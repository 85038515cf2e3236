#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace orvel::JsonValues {

// A JSON integer within 64 bits. Anything else, 1.7 or "1" included, throws the decoder's
// type_error, so that a damaged file is unreadable rather than quietly rounded.
int64_t integer(const nlohmann::json &value);
// The integer under `key`; a missing key throws the decoder's out_of_range.
int64_t integer(const nlohmann::json &object, const char *key);

} // namespace orvel::JsonValues
