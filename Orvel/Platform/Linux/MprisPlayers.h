#pragma once

#include "MediaPlayers.h"

#include <QDBusConnection>

namespace orvel {

// MPRIS: every org.mpris.MediaPlayer2.* name on the bus whose PlaybackStatus is "Playing" is
// told to Pause, and exactly those are told to Play afterwards. Nothing waits for an answer.
class MprisPlayers : public MediaPlayers {
    Q_OBJECT

public:
    explicit MprisPlayers(QDBusConnection connection, QObject *parent = nullptr);

    void pausePlaying() override;
    void resumePaused() override;

private:
    QDBusConnection connection_;
    QStringList paused_;
    // Bumped by each resume, so that a late answer to an earlier pause is dropped.
    quint64 round_ = 0;
};

} // namespace orvel
