#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

namespace orvel {

// Notices when the settings file changes on disk, whoever wrote it (orvel-cli choosing a place,
// another copy of the settings, an editor). Writers replace the file by renaming a new one over
// it, so the folder is watched too and the file watched again after each change.
class SettingsWatcher : public QObject {
    Q_OBJECT

public:
    // Changes that come in a burst are told once, after this quiet time.
    static constexpr int settleMs = 150;

    explicit SettingsWatcher(const QString &fileName, QObject *parent = nullptr);

signals:
    void changed();

private:
    void watch();
    void noticed();

    QString fileName_;
    QByteArray lastContents_;
    QFileSystemWatcher watcher_;
    QTimer settle_;
};

} // namespace orvel
