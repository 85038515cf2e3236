#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvel::cli {

// Plain-text tables for terminals. Widths count code points, not bytes, so Turkish letters
// (two bytes each in UTF-8) line up.
namespace TextTable {

std::size_t displayWidth(std::string_view utf8);
// The text followed by blanks up to the width.
std::string padded(std::string_view utf8, std::size_t width);
// Rows of cells, every column as wide as its widest cell, columns two blanks apart, no trailing
// blanks; each row ends with a newline.
std::string render(const std::vector<std::vector<std::string>> &rows);

} // namespace TextTable

} // namespace orvel::cli
