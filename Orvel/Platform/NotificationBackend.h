#pragma once

#include <QString>

#include "Instant.h"

#include <functional>
#include <memory>

namespace orvel {

// One pending notification.
struct NotificationRequest {
    QString identifier;
    QString title;
    QString body;
    bool defaultSound = false;
    Instant fireAt;
    // Orvel's own sound plays with it: the notification offers "Sesi durdur".
    bool offersStop = false;

    bool operator==(const NotificationRequest &) const = default;
};

// Where notifications are shown: the desktop's notification service, from Platform.
class NotificationBackend {
public:
    virtual ~NotificationBackend() = default;
    // Whether a notification service is there to show anything.
    virtual bool isAvailable() const = 0;
    // Shows the request now. Failures are ignored.
    virtual void show(const NotificationRequest &request) = 0;
    // Opens the desktop's notification settings, when it has a tool for them.
    virtual void openSettings() const {}
    virtual bool canOpenSettings() const { return false; }
    // Orvel's own sound ended: a shown notification that offers "Sesi durdur" no longer should.
    virtual void soundEnded() {}

    // What plays the desktop's message sound for a shown request whose server ignores sound
    // hints; the application owns the player. Without it such requests are silent.
    void setMessageSound(std::function<void()> play) { messageSound_ = std::move(play); }

    // Actions the user chose on a shown notification: openPanelAction (its body) or
    // stopSoundAction ("Sesi durdur").
    static constexpr auto openPanelAction = "default";
    static constexpr auto stopSoundAction = "stop-sound";
    void setActionHandler(std::function<void(const QString &action)> handle) { actionHandler_ = std::move(handle); }

protected:
    void actionInvoked(const QString &action) const
    {
        if (actionHandler_)
            actionHandler_(action);
    }
    void playMessageSound() const
    {
        if (messageSound_)
            messageSound_();
    }

private:
    std::function<void()> messageSound_;
    std::function<void(const QString &)> actionHandler_;
};

} // namespace orvel
