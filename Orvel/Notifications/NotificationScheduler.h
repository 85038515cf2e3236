#pragma once

// Qt first: moc cannot read <concepts> unless Qt's headers came before it.
#include <QObject>
#include <QString>

#include "DayTimes.h"
#include "NotificationBackend.h"
#include "Kerahat.h"
#include "Location.h"
#include "Prayer.h"
#include "QuietHours.h"

#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace orvel {

class Clock;

// What one rescheduling is built from.
struct NotificationPlan {
    std::vector<DayTimes> days;
    Location location;
    std::set<Prayer::Value> enabled;
    int64_t reminderMinutes = 0;
    std::vector<KerahatInterval> kerahat;
    bool systemSound = true;
    bool ownSound = false; // the chime or the user's file, which Orvel plays itself
    QuietHours quietHours;
    bool ramadanMode = true;
    // "Cuma hatırlatması": minutes before Öğle on Fridays; 0 is off.
    int64_t fridayMinutes = 0;
    // A notice at Akşam on a holy night's evening and on a Bayram's eve.
    bool religiousDays = true;
};

// Turns the loaded days and the notification settings into pending notifications, and fires
// each from its own timer at its moment (the desktop keeps no schedule of its own).
class NotificationScheduler : public QObject {
    Q_OBJECT

public:
    static constexpr int maximumPending = 30;

    NotificationScheduler(std::shared_ptr<NotificationBackend> backend, std::shared_ptr<const Clock> clock,
                          QObject *parent = nullptr);
    ~NotificationScheduler() override;

    // Replaces every pending request with the plan's; supersedes a running call. Returns at once:
    // the new set is in place on the next turn of the event loop.
    void reschedule(const NotificationPlan &plan);
    // See NotificationBackend::setMessageSound.
    void setMessageSound(std::function<void()> play);
    // The requests a plan gives at `now`, in order (pure; used by reschedule).
    static std::vector<NotificationRequest> requests(const NotificationPlan &plan, Instant now);
    // The one notice for a machine that slept from `since` to `now`: the latest notified time
    // that entered meanwhile, unless it entered more than missedWithinSeconds ago. Silent.
    static constexpr double missedWithinSeconds = 3 * 3600;
    static std::optional<NotificationRequest> missedWhileAsleep(const NotificationPlan &plan, Instant since, Instant now);
    // Orvel's own sound ended: see NotificationBackend::soundEnded.
    void soundEnded();
    // Shows a notification at once.
    void announce(const NotificationRequest &request);
    // (title, body) of a prayer-entry notification.
    static std::pair<QString, QString> texts(Prayer prayer, const QString &time, const QString &location, bool ramadan);

    std::vector<NotificationRequest> pending() const;
    // True when no notification service is on the session bus.
    bool isDenied() const;
    // Opens the desktop's notification settings when a tool for them is installed.
    void openSystemSettings() const;
    bool canOpenSystemSettings() const;

signals:
    void pendingChanged();
    // The user chose an action on one of Orvel's notifications.
    void stopSoundRequested();
    void openPanelRequested();
    void fired(const QString &identifier);

private:
    void replacePending(const NotificationPlan &plan);
    void timerFired(const QObject *timer);

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace orvel
