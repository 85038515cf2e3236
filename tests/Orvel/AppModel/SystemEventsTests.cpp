#include "linux/LinuxSystemEvents.h"
#include "unix/UnixQuitSignals.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdio>

namespace orvel {
namespace {

constexpr int eventWaitMs = 5000;

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

// A bus of the test's own on which it can play logind and timedated.
class PrivateBus {
public:
    PrivateBus()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty())
            return;
        daemon_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                      QStringLiteral("--print-address")});
        if (!daemon_.waitForStarted() || !daemon_.waitForReadyRead(eventWaitMs))
            return;
        address_ = QString::fromUtf8(daemon_.readLine().trimmed());
    }
    ~PrivateBus()
    {
        for (const QString &name : names_)
            QDBusConnection::disconnectFromBus(name);
        daemon_.kill();
        daemon_.waitForFinished();
    }
    bool isUp() const { return !address_.isEmpty(); }
    QDBusConnection connect(const QString &name)
    {
        names_.append(name);
        return QDBusConnection::connectToBus(address_, name);
    }

private:
    QProcess daemon_;
    QString address_;
    QStringList names_;
};

TEST(LinuxSystemEvents, ZoneFileReplacedOrEditedIsAZoneChange)
{
    const QTemporaryDir folder;
    const QString zoneFile = folder.filePath("localtime");
    ASSERT_TRUE(writeFile(zoneFile, "TZif Europe/Istanbul"));
    LinuxSystemEvents events(QDBusConnection(QStringLiteral("no bus")), zoneFile);
    EXPECT_FALSE(events.watchesSleep());
    EXPECT_TRUE(events.watchesClock());
    QSignalSpy zoneChanged(&events, &SystemEvents::timeZoneChanged);

    // Replaced the way timedated does it: a new file renamed over the old one, twice.
    for (const QByteArray &zone : {QByteArray("TZif Asia/Tokyo"), QByteArray("TZif America/New_York")}) {
        const QString next = folder.filePath("localtime.new");
        ASSERT_TRUE(writeFile(next, zone));
        ASSERT_EQ(::rename(QFile::encodeName(next).constData(), QFile::encodeName(zoneFile).constData()), 0);
        ASSERT_TRUE(zoneChanged.wait(eventWaitMs));
    }
    ASSERT_TRUE(writeFile(zoneFile, "TZif Europe/Lisbon"));
    ASSERT_TRUE(zoneChanged.wait(eventWaitMs));
    EXPECT_EQ(zoneChanged.count(), 3);
}

TEST(LinuxSystemEvents, LogindWakeAndTimedatedZoneOnTheSystemBus)
{
    PrivateBus bus;
    if (!bus.isUp())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    const QTemporaryDir folder;
    LinuxSystemEvents events(bus.connect(QStringLiteral("events")), folder.filePath("localtime"));
    ASSERT_TRUE(events.watchesSleep());
    QSignalSpy woke(&events, &SystemEvents::wokeFromSleep);
    QSignalSpy zoneChanged(&events, &SystemEvents::timeZoneChanged);

    QDBusConnection system = bus.connect(QStringLiteral("system"));
    ASSERT_TRUE(system.registerService(QStringLiteral("org.freedesktop.login1")));
    ASSERT_TRUE(system.registerService(QStringLiteral("org.freedesktop.timedate1")));

    const auto sleep = [&](bool start) {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/login1"), QStringLiteral("org.freedesktop.login1.Manager"),
            QStringLiteral("PrepareForSleep"));
        signal << start;
        return system.send(signal);
    };
    ASSERT_TRUE(sleep(true));
    ASSERT_TRUE(sleep(false));
    ASSERT_TRUE(woke.wait(eventWaitMs));
    EXPECT_EQ(woke.count(), 1) << "going to sleep is no wake";

    const auto properties = [&](const QVariantMap &changed, const QStringList &invalidated) {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/timedate1"),
                                                         QStringLiteral("org.freedesktop.DBus.Properties"),
                                                         QStringLiteral("PropertiesChanged"));
        signal << QStringLiteral("org.freedesktop.timedate1") << changed << invalidated;
        return system.send(signal);
    };
    ASSERT_TRUE(properties({{QStringLiteral("NTP"), true}}, {}));
    ASSERT_TRUE(properties({{QStringLiteral("Timezone"), QStringLiteral("Asia/Tokyo")}}, {}));
    ASSERT_TRUE(zoneChanged.wait(eventWaitMs));
    ASSERT_TRUE(properties({}, {QStringLiteral("Timezone")}));
    ASSERT_TRUE(zoneChanged.wait(eventWaitMs));
    EXPECT_EQ(zoneChanged.count(), 2);
}


TEST(UnixQuitSignals, TerminationReachesTheEventLoopAndHandlersComeBack)
{
    struct sigaction before {};
    ::sigaction(SIGTERM, nullptr, &before);
    {
        UnixQuitSignals quitSignals;
        ASSERT_TRUE(quitSignals.listens());
        UnixQuitSignals second;
        EXPECT_FALSE(second.listens()) << "one owner of the handlers at a time";

        QSignalSpy quit(&quitSignals, &QuitSignals::quitRequested);
        ::raise(SIGTERM);
        ::raise(SIGINT);
        ASSERT_TRUE(quit.wait(2000));
        QTest::qWait(50);
        EXPECT_EQ(quit.count(), 1) << "signals that arrive together are one request";
        ::raise(SIGHUP);
        EXPECT_TRUE(quit.wait(2000));
    }
    struct sigaction after {};
    ::sigaction(SIGTERM, nullptr, &after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
}

} // namespace
} // namespace orvel
