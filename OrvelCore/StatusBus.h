#pragma once

#include "AppId.h"

// Where Orvel serves its status on the session bus, for the application that serves it and the
// command line that follows it. The properties are strings: Title, Label, State ("normal",
// "kerahat", "entry"), NextName and NextMoment (ISO 8601 with the place's offset); the methods
// are ShowPanel, OpenImsakiye and OpenSettings.
namespace orvel::StatusBus {

inline constexpr auto serviceName = AppId::id;
inline constexpr auto objectPath = "/io/github/orvel/Orvel/Status";
inline constexpr auto interfaceName = "io.github.orvel.Orvel.Status";

} // namespace orvel::StatusBus
