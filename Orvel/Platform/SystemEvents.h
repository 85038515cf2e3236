#pragma once

#include <QObject>

namespace orvel {

// The system events after which the times must be loaded again. This base never fires, like a
// source that is missing (no system bus in a container); the platform's comes from Platform.
class SystemEvents : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;


signals:
    void wokeFromSleep();
    void clockChanged();
    void timeZoneChanged();
};

} // namespace orvel
