#pragma once

// The application's one identity: its D-Bus name, desktop file, icon name, autostart entry and
// the id it gives geoclue and the notification server.
namespace orvel::AppId {

inline constexpr auto id = "io.github.orvel.Orvel";

} // namespace orvel::AppId
