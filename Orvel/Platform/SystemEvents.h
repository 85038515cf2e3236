#pragma once

#include <QObject>

namespace orvel {

// The system events after which the times must be loaded again. Each platform has its own
// source; a source that is missing (no system bus in a container) simply never fires.
class SystemEvents : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // The platform's events (Linux: logind sleep, timerfd clock change, /etc/localtime).
    static SystemEvents *createForPlatform(QObject *parent = nullptr);

signals:
    void wokeFromSleep();
    void clockChanged();
    void timeZoneChanged();
};

} // namespace orvel
