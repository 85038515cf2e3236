#pragma once

#include <QString>

#include <optional>

namespace orvel {

// The sound files: the chime written on first use, and at most one imported custom file, in
// the per-user data folder's "Orvel/Sounds".
namespace SoundLibrary {

QString folder();
// Overrides the folder (tests, snapshot runs); an empty path restores the default.
void setFolder(const QString &path);

// The chime's path, writing it when missing; none when it cannot be written.
std::optional<QString> chimePath();
// The imported file ("custom.<ext>"), if any.
std::optional<QString> customPath();
// The desktop's sound for a new message (the freedesktop sound theme's "message-new-instant").
std::optional<QString> messagePath();

struct ImportResult {
    QString displayName; // the user's own file name, empty on failure
    QString error;       // a Turkish message, empty on success
    bool ok() const { return error.isEmpty(); }
};
// Copies the file in after checking that it can be decoded; replaces an earlier custom file.
ImportResult importCustom(const QString &sourcePath);

} // namespace SoundLibrary

} // namespace orvel
