#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace orvel {

// Files Orvel writes and reads back (month caches, failure markers): whole or not at all, and
// never through a symbolic link someone else put in their place.
namespace SafeFile {

// Replaces the file with `text`: written to a new file of its own in the same folder (created
// exclusively, never through a link), then renamed over it, so that readers see the old file or
// the whole new one. `durable` also flushes it to the disk first. False on any failure, with
// nothing left behind.
bool write(const std::filesystem::path &path, std::string_view text, bool durable = false);
// The contents of a regular file (not a link) of at most `maxBytes`; none otherwise.
std::optional<std::string> read(const std::filesystem::path &path, std::uintmax_t maxBytes);

} // namespace SafeFile

} // namespace orvel
