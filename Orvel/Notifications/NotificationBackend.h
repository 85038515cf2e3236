#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace orvel {

struct NotificationRequest;

// Where notifications are shown: the freedesktop service on Linux, another facility elsewhere.
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

    // The backend of the platform Orvel was built for, on the user's session.
    static std::shared_ptr<NotificationBackend> platformDefault();

    // What plays the desktop's message sound for a shown request whose server ignores sound
    // hints; the application owns the player. Without it such requests are silent.
    void setMessageSound(std::function<void()> play) { messageSound_ = std::move(play); }

protected:
    void playMessageSound() const
    {
        if (messageSound_)
            messageSound_();
    }

private:
    std::function<void()> messageSound_;
};

} // namespace orvel
