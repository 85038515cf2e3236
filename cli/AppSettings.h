#pragma once

#include "CliOptions.h"
#include "Location.h"
#include "StatusText.h"

// The application's own settings store, so that the command line shows and sets the place the
// desktop application uses.
namespace orvel::cli::AppSettings {

// The stored place and method as option defaults; the application's defaults when nothing usable
// is stored.
PlaceOptions placeOptions();

// The stored settings that shape the status line, the application's defaults where none is
// stored.
StatusSettings statusSettings();

// Stores the place for the application (a running one notices and reloads); false when the store
// cannot be written.
bool choosePlace(const Location &location);

} // namespace orvel::cli::AppSettings
