#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvel::DecimalText {

// Decimal text with a point whatever the process locale (a GUI sets it from the
// environment, and "41,008" would split cache names and break queries).
std::string fixed(double value, int decimals);

// Shortest text that reads back as the same value ("90", "41.5").
std::string shortest(double value);

// The whole text as a decimal number with a point ("41.02", "-5"); none for anything else.
std::optional<double> parse(std::string_view text);

} // namespace orvel::DecimalText
