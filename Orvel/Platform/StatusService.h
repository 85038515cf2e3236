#pragma once

#include <QObject>
#include <QString>

namespace orvel {

// What Orvel tells panels and scripts outside it about the moment.
struct PublishedStatus {
    QString title;      // "Akşam 1:15" in the chosen style; "Öğle vakti" in the entry minute
    QString label;      // "Akşam ezanına 1 saat 15 dakika kaldı"
    QString state;      // "normal", "kerahat" or "entry"
    QString nextName;   // "Akşam" ("İftar" in Ramadan); empty while nothing is loaded
    QString nextMoment; // "2026-03-10T18:47:00+03:00" in the place's zone; empty while nothing is loaded
    bool playing = false; // Orvel's own sound plays now

    bool operator==(const PublishedStatus &) const = default;
};

// The status as a service of the desktop session, for panel widgets and scripts that follow it
// instead of asking again and again, and the requests they send back. This base publishes nothing
// and asks nothing; the platform's comes from Platform.
class StatusService : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Tells followers of what changed since the last status; an equal status tells nothing.
    virtual void publish(const PublishedStatus &status) { Q_UNUSED(status); }

signals:
    void showPanelRequested();
    void openImsakiyeRequested();
    void openSettingsRequested();
    void stopSoundRequested();
};

} // namespace orvel
