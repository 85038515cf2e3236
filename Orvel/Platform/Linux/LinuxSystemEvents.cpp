#include "LinuxSystemEvents.h"

#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <ctime>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace orvel {

namespace {

const QString login1Service = QStringLiteral("org.freedesktop.login1");
const QString login1Path = QStringLiteral("/org/freedesktop/login1");
const QString login1Manager = QStringLiteral("org.freedesktop.login1.Manager");
const QString timedateService = QStringLiteral("org.freedesktop.timedate1");
const QString timedatePath = QStringLiteral("/org/freedesktop/timedate1");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString timezoneProperty = QStringLiteral("Timezone");
const QString machineZoneFile = QStringLiteral("/etc/localtime");

// The timer only exists to be cancelled by a clock change; it is set far enough ahead that it
// never expires in practice, and re-armed should it ever do so.
constexpr time_t clockTimerHorizon = 10LL * 365 * 24 * 3600;
// Replacing /etc/localtime shows as several file events, and timedated announces the same
// change on the bus: they are gathered into one signal.
constexpr int zoneSettleMs = 300;

} // namespace

LinuxSystemEvents::LinuxSystemEvents(QObject *parent)
    : LinuxSystemEvents(QDBusConnection::systemBus(), machineZoneFile, parent)
{
}

LinuxSystemEvents::LinuxSystemEvents(const QDBusConnection &systemBus, const QString &zoneFile, QObject *parent)
    : SystemEvents(parent)
    , zoneFile_(zoneFile)
{
    watchSleep(systemBus);
    watchClock();
    watchZone(systemBus);
}

LinuxSystemEvents::~LinuxSystemEvents()
{
    if (clockFd_ >= 0)
        ::close(clockFd_);
}

void LinuxSystemEvents::watchSleep(QDBusConnection bus)
{
    if (!bus.isConnected())
        return;
    bus.connect(login1Service, login1Path, login1Manager, QStringLiteral("PrepareForSleep"), this,
                SLOT(onPrepareForSleep(bool)));
}

void LinuxSystemEvents::onPrepareForSleep(bool start)
{
    if (!start)
        emit wokeFromSleep();
}

void LinuxSystemEvents::watchClock()
{
    clockFd_ = ::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
    if (clockFd_ < 0)
        return;
    if (!armClock()) {
        ::close(clockFd_);
        clockFd_ = -1;
        return;
    }
    clockNotifier_ = new QSocketNotifier(clockFd_, QSocketNotifier::Read, this);
    connect(clockNotifier_, &QSocketNotifier::activated, this, &LinuxSystemEvents::readClock);
}

bool LinuxSystemEvents::armClock()
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    itimerspec spec{};
    spec.it_value.tv_sec = now.tv_sec + clockTimerHorizon;
    return ::timerfd_settime(clockFd_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &spec, nullptr) == 0;
}

void LinuxSystemEvents::readClock()
{
    uint64_t expirations = 0;
    const ssize_t read = ::read(clockFd_, &expirations, sizeof expirations);
    if (read < 0 && errno == EAGAIN)
        return;
    const bool clockJumped = read < 0 && errno == ECANCELED;
    // A cancelled timer stays cancelled: it is armed again to hear of the next change.
    armClock();
    if (clockJumped)
        emit clockChanged();
}

void LinuxSystemEvents::watchZone(QDBusConnection bus)
{
    zoneSettle_ = new QTimer(this);
    zoneSettle_->setSingleShot(true);
    zoneSettle_->setInterval(zoneSettleMs);
    connect(zoneSettle_, &QTimer::timeout, this, &LinuxSystemEvents::zoneSettled);

    zoneIdentity_ = zoneIdentity();
    // The file is usually replaced rather than written (a new symlink renamed over it), which
    // only its folder sees; the file itself is watched for edits in place.
    zoneWatcher_ = new QFileSystemWatcher(this);
    zoneWatcher_->addPath(QFileInfo(zoneFile_).absolutePath());
    zoneWatcher_->addPath(zoneFile_);
    connect(zoneWatcher_, &QFileSystemWatcher::fileChanged, this, &LinuxSystemEvents::zoneFileTouched);
    connect(zoneWatcher_, &QFileSystemWatcher::directoryChanged, this, &LinuxSystemEvents::zoneFileTouched);

    if (bus.isConnected()) {
        bus.connect(timedateService, timedatePath, propertiesInterface, QStringLiteral("PropertiesChanged"), this,
                    SLOT(onTimeDatePropertiesChanged(QString, QVariantMap, QStringList)));
    }
}

void LinuxSystemEvents::onTimeDatePropertiesChanged(const QString &interfaceName, const QVariantMap &changed,
                                                     const QStringList &invalidated)
{
    if (interfaceName != timedateService)
        return;
    if (!changed.contains(timezoneProperty) && !invalidated.contains(timezoneProperty))
        return;
    zoneAnnounced_ = true;
    zoneSettle_->start();
}

LinuxSystemEvents::ZoneIdentity LinuxSystemEvents::zoneIdentity() const
{
    ZoneIdentity identity;
    identity.target = QFileInfo(zoneFile_).symLinkTarget();
    struct stat info{};
    if (::stat(QFile::encodeName(zoneFile_).constData(), &info) != 0)
        return identity;
    identity.inode = info.st_ino;
    identity.size = info.st_size;
    identity.modifiedNs = qint64(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
    return identity;
}

void LinuxSystemEvents::zoneFileTouched()
{
    zoneSettle_->start();
}

void LinuxSystemEvents::zoneSettled()
{
    // A replaced file drops out of the watch list; the new one is watched again.
    if (!zoneWatcher_->files().contains(zoneFile_) && QFileInfo::exists(zoneFile_))
        zoneWatcher_->addPath(zoneFile_);
    const ZoneIdentity identity = zoneIdentity();
    const bool changed = zoneAnnounced_ || identity != zoneIdentity_;
    zoneIdentity_ = identity;
    zoneAnnounced_ = false;
    if (changed)
        emit timeZoneChanged();
}

} // namespace orvel
