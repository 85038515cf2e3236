#pragma once

#include <QFont>

// Countdowns and times change a digit every minute; with digits of unequal width the text
// would shift sideways each time. These pick a font whose ten digits are equally wide.
namespace orvel::TabularDigits {

bool hasEqualDigits(const QFont &font);

// The font itself when its digits are equal, else the same font in a family known to have
// them, when that family is installed.
QFont font(const QFont &font);

} // namespace orvel::TabularDigits
