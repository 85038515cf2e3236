#include "DecimalText.h"

#include <array>
#include <charconv>

namespace orvel::DecimalText {

std::string fixed(double value, int decimals)
{
    std::array<char, 384> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
    return std::string(text.data(), result.ptr);
}

std::string shortest(double value)
{
    std::array<char, 64> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return std::string(text.data(), result.ptr);
}

} // namespace orvel::DecimalText
