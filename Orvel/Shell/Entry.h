#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace orvel {

// The program's entry point: snapshot mode when the arguments ask for it, else the application.
namespace Entry {

int main(int argc, char **argv);

// The folder that follows "--snapshot"; none when "--snapshot" is absent or the last argument.
std::optional<QString> snapshotFolder(const QStringList &arguments);

} // namespace Entry

} // namespace orvel
