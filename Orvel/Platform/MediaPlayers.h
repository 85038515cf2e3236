#pragma once

#include <QObject>
#include <QStringList>

namespace orvel {

// The desktop's media players, paused while the entry sound plays and resumed after it. Each
// platform has its own; where there is none, nothing is paused.
class MediaPlayers : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // The platform's players (Linux and the BSDs: MPRIS on the session bus).
    static MediaPlayers *createForPlatform(QObject *parent = nullptr);

    // Pauses every player that is playing and remembers exactly those.
    virtual void pausePlaying() {}
    // Resumes the players paused last, and forgets them.
    virtual void resumePaused() {}
};

} // namespace orvel
