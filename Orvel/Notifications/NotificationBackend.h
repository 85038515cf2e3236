#pragma once

#include <QString>

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
};

} // namespace orvel
