#pragma once

#include "Colors.h"
#include "Instant.h"
#include "Location.h"

#include <QImage>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class QWidget;

namespace orvel {

class AppModel;

// Draws the main views off screen into PNG files, light and dark, prints a summary of the data
// and ends. Runs without a status item and without the user's settings.
namespace Snapshot {

// Pictures are drawn at twice their size in points, so the 330-point panel is 660 pixels wide.
constexpr qreal devicePixelRatio = 2;
// Longer than two months fetched one after the other at the web client's 15 s time-out.
constexpr int loadBoundMs = 45'000;
constexpr double viewWaitSeconds = 0.3;
// The timetable's list is given longer to settle and scroll to today.
constexpr double imsakiyeWaitSeconds = 0.6;

// The whole run; the process's exit status.
int run(const QString &outputDirectory, const QStringList &arguments);

// "--now" is read as Istanbul time in the form "2026-03-10T12:30"; none when it does not parse.
std::optional<Instant> parseNow(const QString &value);
// The value after `option`, when there is one.
std::optional<QString> optionValue(const QStringList &arguments, const QString &option);
// "İstanbul, Üsküdar".
Location uskudar();

// The status images of every style, the kerahat dot and the entry announcement, each with its
// label, in a column.
std::unique_ptr<QWidget> labels(AppModel &model, Appearance appearance);

// Lays the view out at its own size on the appearance's window colour, lets it settle for
// `waitSeconds`, and writes it as a PNG. False when nothing was written.
bool write(QWidget &view, Appearance appearance, double waitSeconds, const QString &path);

// A picture that could not be written whole (an unwritable folder, a full disk).
struct WriteError {
    QString path;
};
// Writes the PNG or throws WriteError, leaving no partial file behind.
void savePng(const QImage &image, const QString &path);

// "source=offline location=İstanbul, Üsküdar", then the six times when today is loaded.
QStringList summary(const AppModel &model);

} // namespace Snapshot

} // namespace orvel
