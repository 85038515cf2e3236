#pragma once

#include <QObject>
#include <QStringList>

namespace orvel {

// The desktop's media players, paused while the entry sound plays and resumed after it. This
// base pauses nothing; the platform's players come from Platform.
class MediaPlayers : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;


    // Pauses every player that is playing and remembers exactly those.
    virtual void pausePlaying() {}
    // Resumes the players paused last, and forgets them.
    virtual void resumePaused() {}
};

} // namespace orvel
