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

std::optional<double> parse(std::string_view text)
{
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace orvel::DecimalText
