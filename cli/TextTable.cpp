#include "TextTable.h"

#include <algorithm>

namespace orvel::cli::TextTable {

std::size_t displayWidth(std::string_view utf8)
{
    // Continuation bytes (10xxxxxx) belong to the code point before them.
    return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string padded(std::string_view utf8, std::size_t width)
{
    std::string result(utf8);
    const std::size_t current = displayWidth(utf8);
    if (current < width)
        result.append(width - current, ' ');
    return result;
}

std::string render(const std::vector<std::vector<std::string>> &rows)
{
    std::vector<std::size_t> widths;
    for (const auto &row : rows) {
        if (widths.size() < row.size())
            widths.resize(row.size(), 0);
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], displayWidth(row[column]));
    }

    std::string out;
    for (const auto &row : rows) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            if (column > 0)
                line += "  ";
            line += padded(row[column], widths[column]);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out += line;
        out += '\n';
    }
    return out;
}

} // namespace orvel::cli::TextTable
