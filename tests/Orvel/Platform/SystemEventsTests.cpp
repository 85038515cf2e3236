#include "PrivateBus.h"
#include "LinuxSystemEvents.h"
#include "UnixQuitSignals.h"

#include <gtest/gtest.h>

#include <QDBusMessage>
#include <QSignalSpy>
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

TEST(LinuxSystemEvents, ZoneFileReplacedOrEditedIsAZoneChange)
{
    const QTemporaryDir folder;
    const QString zoneFile = folder.filePath("localtime");
    ASSERT_TRUE(writeFile(zoneFile, "TZif Europe/Istanbul"));
    LinuxSystemEvents events(QDBusConnection(QStringLiteral("no bus")), zoneFile);
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
    test::PrivateBus bus;
    const QTemporaryDir folder;
    LinuxSystemEvents events(bus.connect(), folder.filePath("localtime"));
    QSignalSpy woke(&events, &SystemEvents::wokeFromSleep);
    QSignalSpy zoneChanged(&events, &SystemEvents::timeZoneChanged);

    QDBusConnection system = bus.connect(); // plays logind and timedated
    ASSERT_TRUE(system.registerService("org.freedesktop.login1"));
    ASSERT_TRUE(system.registerService("org.freedesktop.timedate1"));

    for (const bool starting : {true, false}) {
        QDBusMessage signal = QDBusMessage::createSignal("/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                                         "PrepareForSleep");
        ASSERT_TRUE(system.send(signal << starting));
    }
    ASSERT_TRUE(woke.wait(eventWaitMs));
    EXPECT_EQ(woke.count(), 1) << "going to sleep is no wake";

    const auto properties = [&](const QVariantMap &changed, const QStringList &invalidated) {
        QDBusMessage signal = QDBusMessage::createSignal("/org/freedesktop/timedate1",
                                                         "org.freedesktop.DBus.Properties", "PropertiesChanged");
        return system.send(signal << QStringLiteral("org.freedesktop.timedate1") << changed << invalidated);
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
        UnixQuitSignals second;
        QSignalSpy quit(&quitSignals, &QuitSignals::quitRequested);
        QSignalSpy secondQuit(&second, &QuitSignals::quitRequested);
        ::raise(SIGTERM);
        ::raise(SIGINT);
        ASSERT_TRUE(quit.wait(2000));
        // A later signal is read after anything the first two left behind.
        ::raise(SIGHUP);
        EXPECT_TRUE(quit.wait(2000));
        EXPECT_EQ(quit.count(), 2) << "signals that arrive together are one request";
        EXPECT_EQ(secondQuit.count(), 0) << "one owner of the handlers at a time";
    }
    struct sigaction after {};
    ::sigaction(SIGTERM, nullptr, &after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
}

} // namespace
} // namespace orvel
