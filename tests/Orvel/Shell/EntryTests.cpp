#include "Entry.h"
#include "Snapshot.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QTimeZone>

#include <cstdlib>
#include <unicode/timezone.h>

using namespace orvel;

TEST(Entry, SnapshotFolderFollowsTheSnapshotArgument)
{
    EXPECT_EQ(Entry::snapshotFolder({"orvel"}), std::nullopt);
    EXPECT_EQ(Entry::snapshotFolder({"orvel", "--snapshot"}), std::nullopt);
    EXPECT_EQ(Entry::snapshotFolder({"orvel", "--uskudar", "--snapshot"}), std::nullopt);
    EXPECT_EQ(Entry::snapshotFolder({"orvel", "--snapshot", "out"}), QString("out"));
    EXPECT_EQ(Entry::snapshotFolder({"orvel", "--now", "2026-03-10T12:30", "--snapshot", "/tmp/a b", "--uskudar"}),
              QString("/tmp/a b"));
}

namespace {

// Sets the machine's zone for one test and puts the previous one back.
class MachineZone {
public:
    explicit MachineZone(const char *zone)
        : previous_(qgetenv("TZ"))
    {
        setenv("TZ", zone, 1);
        tzset();
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(zone));
    }
    ~MachineZone()
    {
        setenv("TZ", previous_.constData(), 1);
        tzset();
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(previous_.constData()));
    }

private:
    QByteArray previous_;
};

Instant utc(int year, int month, int day, int hour, int minute)
{
    return Instant::fromUnix(static_cast<double>(
        QDateTime(QDate(year, month, day), QTime(hour, minute), QTimeZone::utc()).toSecsSinceEpoch()));
}

} // namespace

TEST(Snapshot, NowIsReadAsIstanbulTimeWhateverTheMachineZone)
{
    for (const char *machineZone : {"UTC", "America/New_York", "Asia/Tokyo"}) {
        SCOPED_TRACE(machineZone);
        const MachineZone zone(machineZone);
        EXPECT_EQ(Snapshot::parseNow("2026-03-10T12:30"), utc(2026, 3, 10, 9, 30));
        EXPECT_EQ(Snapshot::parseNow("2026-07-01T00:05"), utc(2026, 6, 30, 21, 5));
        // 02:30 on 2026-03-08 does not exist in New York; Istanbul has it.
        EXPECT_EQ(Snapshot::parseNow("2026-03-08T02:30"), utc(2026, 3, 7, 23, 30));
    }
    for (const char *bad : {"", "2026-03-10", "2026-03-10 12:30", "2026-02-30T10:00", "2026-03-10T25:00",
                            "2026-03-10T12:30:00", "yarın"}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(Snapshot::parseNow(bad), std::nullopt);
    }
    EXPECT_EQ(Snapshot::optionValue({"orvel", "--snapshot", "out", "--now"}, "--now"), std::nullopt);
    EXPECT_EQ(Snapshot::optionValue({"orvel", "--now", "x", "--uskudar"}, "--now"), QString("x"));
}
