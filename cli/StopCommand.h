#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace orvel {
class Clock;
}

// orvel-cli stop: silences the sound a running Orvel plays (the entry chime or the user's file),
// for a keyboard shortcut or a panel button.
namespace orvel::cli::StopCommand {

std::string help();
int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);

} // namespace orvel::cli::StopCommand
