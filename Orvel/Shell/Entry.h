#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace orvel {

// The program's entry point: snapshot mode when the arguments ask for it, else the application.
namespace Entry {

int main(int argc, char **argv);

// The folder that follows "--snapshot"; none when "--snapshot" is absent or the last argument.
std::optional<QString> snapshotFolder(const QStringList &arguments);

// What the command line asks for, read as strictly as orvel-cli reads its own.
struct Options {
    bool help = false;
    bool version = false;
    std::optional<QString> snapshotFolder;
    std::optional<QString> now; // "2026-03-10T12:30", checked
    bool uskudar = false;
    std::optional<QString> service; // the web service's address, for snapshots

    bool operator==(const Options &) const = default;
};
// The options, or why they cannot be read: one Turkish line without the program's name.
std::variant<Options, QString> parse(const QStringList &arguments);

} // namespace Entry

} // namespace orvel
