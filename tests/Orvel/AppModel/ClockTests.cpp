#include "AppModelTestSupport.h"

#include "HijriDate.h"
#include "OrvelFormat.h"
#include "SystemEvents.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

namespace orvel::test {
namespace {

const Location tokyo{"Tokyo", 35.6762, 139.6503, "Asia/Tokyo"};
const Location ankara{"Ankara", 39.9208, 32.8541, "Europe/Istanbul"};

TEST(AppModelClock, RollsOverAtThePlacesMidnight)
{
    Harness harness(at(2026, 3, 1, 23, 59, 59, "Asia/Tokyo"));
    Defaults::encode(Defaults::Key::location, tokyo);
    const auto model = harness.model();
    ASSERT_TRUE(reloadAndWait(*model));
    ASSERT_EQ(model->today()->day, (DayKey{2026, 3, 1}));
    EXPECT_EQ(model->tomorrow()->day, (DayKey{2026, 3, 2}));

    // 00:00 in Tokyo is still the afternoon of the 1st on this machine.
    QSignalSpy finished(model.get(), &AppModel::loadFinished);
    harness.clock->advance(1);
    model->tick();
    EXPECT_EQ(model->now(), at(2026, 3, 2, 0, 0, 0, "Asia/Tokyo"));
    EXPECT_TRUE(model->isLoading());
    ASSERT_TRUE(finished.wait(loadWaitMs));
    EXPECT_EQ(model->today()->day, (DayKey{2026, 3, 2}));

    // A zone id that names no zone falls back to the machine's.
    model->setLocation({"Nowhere", 41, 29, "Mars/Olympus"});
    harness.clock->set(at(2026, 3, 2, 23, 59, 30));
    ASSERT_TRUE(reloadAndWait(*model));
    EXPECT_EQ(model->today()->day, (DayKey{2026, 3, 2}));
    harness.clock->advance(30);
    model->tick();
    EXPECT_TRUE(model->isLoading());
    ASSERT_TRUE(finished.wait(loadWaitMs));
    EXPECT_EQ(model->today()->day, (DayKey{2026, 3, 3}));
}

TEST(AppModelClock, RetriesTheOnlineSourceAfterHalfAnHourOffline)
{
    const Instant start = at(2026, 3, 10, 10, 0, 30);
    Harness harness(start);
    harness.source->setFailing(true);
    const auto model = harness.model();
    ASSERT_TRUE(reloadAndWait(*model));
    ASSERT_EQ(model->source(), TimesSource::offline);
    ASSERT_TRUE(model->today());

    harness.clock->set(start + 1799);
    model->tick();
    EXPECT_FALSE(model->isLoading());

    QSignalSpy finished(model.get(), &AppModel::loadFinished);
    harness.source->setFailing(false);
    harness.clock->set(start + 1801);
    model->tick();
    EXPECT_TRUE(model->isLoading());
    ASSERT_TRUE(finished.wait(loadWaitMs));
    EXPECT_EQ(model->source(), TimesSource::online);

    // Online again: no more retries.
    harness.clock->set(start + 4000);
    model->tick();
    EXPECT_FALSE(model->isLoading());
}

TEST(AppModelClock, OnlyTheNewestLoadIsApplied)
{
    Harness harness(at(2026, 3, 10, 10, 0));
    Defaults::encode(Defaults::Key::location, ankara);
    harness.source->holdBack(ankara.name);
    const auto model = harness.model();
    QSignalSpy finished(model.get(), &AppModel::loadFinished);

    model->reload();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !harness.source->asked().empty(); }, loadWaitMs));
    model->setLocation(Location::istanbul());
    ASSERT_TRUE(finished.wait(loadWaitMs));
    const DayTimes istanbulDay = PrayerCalculator::times({2026, 3, 10}, Location::istanbul(), CalculationMethod::diyanet);
    EXPECT_EQ(model->today(), istanbulDay);
    EXPECT_FALSE(model->isLoading());

    // The held-back answer for Ankara arrives last and is dropped.
    harness.source->release();
    settleWorkers();
    EXPECT_EQ(finished.count(), 1);
    EXPECT_EQ(model->today(), istanbulDay);
    EXPECT_FALSE(model->isLoading());
}

TEST(AppModelClock, FrozenClockLoadsItsOwnDayAndSchedulesNothing)
{
    const Instant frozen = at(2026, 11, 16, 12, 34, 56);
    Harness harness(at(2026, 3, 10, 10, 0));
    const auto model = harness.model(frozen);
    EXPECT_EQ(model->now(), at(2026, 11, 16, 12, 34));
    ASSERT_TRUE(reloadAndWait(*model));
    EXPECT_EQ(model->today()->day, (DayKey{2026, 11, 16}));

    QSignalSpy nowChanged(model.get(), &AppModel::nowChanged);
    harness.clock->advance(7200);
    model->tick();
    model->setReminderMinutes(5);
    settleWorkers();
    EXPECT_EQ(nowChanged.count(), 0);
    EXPECT_EQ(model->now(), at(2026, 11, 16, 12, 34));
    EXPECT_TRUE(harness.scheduler.pending().empty());

    const std::string hijri = HijriDate::approximate({2026, 11, 16}).formatted();
    EXPECT_EQ(model->dateLine(), QString::fromStdString("16 Kasım 2026 Pazartesi · " + hijri));
    EXPECT_EQ(harness.model(frozen)->dateLine(), QStringLiteral("16 Kasım 2026 Pazartesi"));
}

TEST(AppModelClock, PrefetchesTheMonthTenDaysAheadFromThe25th)
{
    struct Case {
        Instant start;
        std::vector<MonthKey> expected;
    };
    const std::vector<Case> cases{
        {at(2026, 3, 25, 10, 0), {{2026, 3}, {2026, 4}}},
        {at(2026, 2, 25, 10, 0), {{2026, 2}, {2026, 3}}},
        {at(2026, 3, 24, 10, 0), {{2026, 3}}},
    };
    for (const Case &c : cases) {
        Harness harness(c.start);
        const auto model = harness.model();
        ASSERT_TRUE(reloadAndWait(*model));
        settleWorkers();
        EXPECT_EQ(harness.source->asked(), c.expected) << OrvelFormat::longDate(c.start, TimeZone::current());
    }
}

TEST(AppModelClock, SystemEventsStartLoads)
{
    Harness harness(at(2026, 3, 10, 10, 0));
    SystemEvents events;
    AppModel model(std::nullopt, true, AppModel::Services{harness.clock, harness.repository, &harness.scheduler, &events});
    EXPECT_TRUE(model.isLoading()) << "starting the services starts the first load";
    QSignalSpy finished(&model, &AppModel::loadFinished);
    ASSERT_TRUE(finished.wait(loadWaitMs));

    for (const auto signal : {&SystemEvents::wokeFromSleep, &SystemEvents::clockChanged, &SystemEvents::timeZoneChanged}) {
        emit(events.*signal)();
        EXPECT_TRUE(model.isLoading());
        ASSERT_TRUE(finished.wait(loadWaitMs));
    }
    EXPECT_EQ(TimeZone::current().id(), "Europe/Istanbul");
}

} // namespace
} // namespace orvel::test
