#include "SettingsWatcher.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace orvel {

namespace {

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

SettingsWatcher::SettingsWatcher(const QString &fileName, QObject *parent)
    : QObject(parent)
    , fileName_(QFileInfo(fileName).absoluteFilePath())
    , lastContents_(contents(fileName_))
{
    settle_.setSingleShot(true);
    settle_.setInterval(settleMs);
    connect(&settle_, &QTimer::timeout, this, &SettingsWatcher::noticed);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, &settle_, qOverload<>(&QTimer::start));
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, &settle_, qOverload<>(&QTimer::start));
    // The folder may not exist before the first setting is stored.
    QDir().mkpath(QFileInfo(fileName_).absolutePath());
    watch();
}

void SettingsWatcher::watch()
{
    const QString folder = QFileInfo(fileName_).absolutePath();
    if (!watcher_.directories().contains(folder))
        watcher_.addPath(folder);
    if (QFileInfo::exists(fileName_) && !watcher_.files().contains(fileName_))
        watcher_.addPath(fileName_);
}

void SettingsWatcher::noticed()
{
    watch();
    // Other files of the folder and rewrites with the same text are no change.
    QByteArray now = contents(fileName_);
    if (now == lastContents_)
        return;
    lastContents_ = std::move(now);
    emit changed();
}

} // namespace orvel
