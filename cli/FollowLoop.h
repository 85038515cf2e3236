#pragma once

#include "StatusCommand.h"

#include <iosfwd>

namespace orvel {
class Clock;
}

namespace orvel::cli {

// The running part of `orvel-cli status --follow`: follows a running Orvel on the session bus
// and, while none runs (or the command asks about a place of its own), looks at its own clock at
// every whole second. Runs until the process is ended or the output is closed.
namespace FollowLoop {

int run(const StatusCommand::Request &request, const Clock &clock, std::ostream &out);

} // namespace FollowLoop

} // namespace orvel::cli
