#pragma once

#include "SystemEvents.h"

#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantMap>

class QFileSystemWatcher;
class QSocketNotifier;
class QTimer;

namespace orvel {

// Linux sources of the reload events: logind's PrepareForSleep(false) on the system bus for a
// wake, a timerfd cancelled by every jump of the real-time clock, and /etc/localtime plus
// timedated for the zone. Each source is optional: one that cannot be set up never fires.
class LinuxSystemEvents : public SystemEvents {
    Q_OBJECT

public:
    explicit LinuxSystemEvents(QObject *parent = nullptr);
    // Another bus and zone file than the machine's (tests).
    LinuxSystemEvents(const QDBusConnection &systemBus, const QString &zoneFile, QObject *parent = nullptr);
    ~LinuxSystemEvents() override;

private Q_SLOTS:
    void onPrepareForSleep(bool start);
    void onTimeDatePropertiesChanged(const QString &interfaceName, const QVariantMap &changed,
                                     const QStringList &invalidated);

private:
    // What tells one zone file from another without reading it: the link's target and the
    // identity and age of the file behind it.
    struct ZoneIdentity {
        QString target;
        quint64 inode = 0;
        qint64 size = -1;
        qint64 modifiedNs = 0;
        bool operator==(const ZoneIdentity &) const = default;
    };

    void watchSleep(QDBusConnection bus);
    void watchClock();
    bool armClock();
    void readClock();
    void watchZone(QDBusConnection bus);
    ZoneIdentity zoneIdentity() const;
    void zoneFileTouched();
    void zoneSettled();

    int clockFd_ = -1;
    QSocketNotifier *clockNotifier_ = nullptr;
    QString zoneFile_;
    ZoneIdentity zoneIdentity_;
    bool zoneAnnounced_ = false;
    QFileSystemWatcher *zoneWatcher_ = nullptr;
    QTimer *zoneSettle_ = nullptr;
};

} // namespace orvel
