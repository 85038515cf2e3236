#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace orvel {

// The file picker of the settings, behind a seam: tests give the answer of the next call
// instead of a modal dialog.
namespace FileChooser {

// A sound file chosen by the user; none when cancelled.
std::optional<QString> audioFile(QWidget *parent);

// The next audioFile() returns this without asking anyone (a path, or none for "cancelled").
void setNextAnswer(std::optional<QString> answer);

} // namespace FileChooser

} // namespace orvel
