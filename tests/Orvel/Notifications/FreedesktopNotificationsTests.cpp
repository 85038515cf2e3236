#include "Clock.h"
#include "FreedesktopNotifications.h"
#include "NotificationTestSupport.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace orvel;
using namespace orvel::test;

namespace {

constexpr int arrivalWaitMs = 5000;
const DayKey may12{2026, 5, 12};

// A scheduler whose backend talks to a recording server on a private bus.
class Delivery : public ::testing::Test {
protected:
    static inline const QStringList fullServer{"body", "body-markup", "sound"};

    void start(const QStringList &capabilities)
    {
        server = std::make_unique<RecordingServer>(capabilities);
        ASSERT_TRUE(server->registerOn(bus.connect()));
        backend = std::make_shared<FreedesktopNotifications>(bus.connect());
        backend->setMessageSound([this] { ++ownSounds; });
        scheduler = std::make_unique<NotificationScheduler>(backend, clock);
    }

    // Öğle shortly ahead of the clock, İkindi a day later; the rest is past.
    NotificationPlan plan(const QString &placeName = "Üsküdar", double ogleAhead = 0.25)
    {
        DayTimes times = day(may12, 11);
        times.times[Prayer::ogle] = clock->now() + ogleAhead;
        times.times[Prayer::ikindi] = clock->now() + 86400;
        NotificationPlan plan;
        plan.days = {times};
        plan.location = uskudar;
        plan.location.name = placeName.toStdString();
        plan.enabled = {Prayer::ogle, Prayer::ikindi};
        return plan;
    }

    bool waitForArrivals(size_t count)
    {
        return QTest::qWaitFor([&] { return server->received.size() >= count; }, arrivalWaitMs);
    }

    PrivateBus bus;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>(at(may12, 13, 0));
    std::unique_ptr<RecordingServer> server;
    std::shared_ptr<FreedesktopNotifications> backend;
    std::unique_ptr<NotificationScheduler> scheduler;
    int ownSounds = 0;
};

QStringList identifiers(const std::vector<NotificationRequest> &requests)
{
    QStringList list;
    for (const NotificationRequest &request : requests)
        list << request.identifier;
    return list;
}

} // namespace

TEST_F(Delivery, ArrivesAtItsMomentWithEscapedBodyAndSoundHints)
{
    ASSERT_NO_FATAL_FAILURE(start(fullServer));
    QSignalSpy fired(scheduler.get(), &NotificationScheduler::fired);
    scheduler->reschedule(plan("Ali & Veli <Köy>"));
    ASSERT_TRUE(waitForArrivals(1));

    const RecordingServer::Received &shown = server->received.front();
    EXPECT_EQ(shown.appName, "Orvel");
    EXPECT_EQ(shown.summary, "Öğle ezanı · 13:00");
    EXPECT_EQ(shown.body, "Ali &amp; Veli &lt;Köy&gt; için öğle vakti girdi.");
    EXPECT_EQ(shown.expireTimeout, -1);
    EXPECT_EQ(shown.hints.value("sound-name").toString(), "message-new-instant");
    EXPECT_FALSE(shown.hints.contains("suppress-sound"));
    EXPECT_EQ(shown.hints.value("desktop-entry").toString(), "orvel");
    EXPECT_EQ(shown.hints.value("urgency").metaType(), QMetaType::fromType<uchar>());
    EXPECT_EQ(shown.hints.value("urgency").toInt(), 1);
    ASSERT_EQ(fired.count(), 1);
    EXPECT_EQ(fired.front().front().toString(), "2026-05-12-ogle");
    EXPECT_EQ(identifiers(scheduler->pending()), QStringList{"2026-05-12-ikindi"});

    NotificationPlan silent = plan();
    silent.systemSound = false;
    scheduler->reschedule(silent);
    ASSERT_TRUE(waitForArrivals(2));
    EXPECT_TRUE(server->received.back().hints.value("suppress-sound").toBool());
    EXPECT_FALSE(server->received.back().hints.contains("sound-name"));
    // The server plays sounds itself and was asked what it can do only once.
    EXPECT_EQ(ownSounds, 0);
    EXPECT_EQ(server->capabilityQuestions, 1);
}

TEST_F(Delivery, PlainServerWithoutSoundGetsRawTextAndOurSound)
{
    ASSERT_NO_FATAL_FAILURE(start({"body"}));
    NotificationRequest request{"x", "Öğle ezanı · 13:05", "Ali & Veli <Köy>", true, clock->now()};
    backend->show(request);
    request.defaultSound = false;
    backend->show(request);
    ASSERT_TRUE(waitForArrivals(2));
    EXPECT_EQ(server->received.front().body, "Ali & Veli <Köy>");
    EXPECT_EQ(server->received.front().hints.value("sound-name").toString(), "message-new-instant");
    ASSERT_TRUE(QTest::qWaitFor([&] { return ownSounds == 1; }, arrivalWaitMs));
    QTest::qWait(100);
    EXPECT_EQ(ownSounds, 1);
}

TEST_F(Delivery, NewestRescheduleWinsAndLateOrEmptyPlansFireNothing)
{
    ASSERT_NO_FATAL_FAILURE(start(fullServer));
    QSignalSpy changed(scheduler.get(), &NotificationScheduler::pendingChanged);
    NotificationPlan first = plan();
    first.enabled = {Prayer::ikindi};
    NotificationPlan second = plan();
    second.enabled = {Prayer::yatsi};
    second.days[0].times[Prayer::yatsi] = clock->now() + 7200;
    scheduler->reschedule(first);
    scheduler->reschedule(second);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !scheduler->pending().empty(); }, arrivalWaitMs));
    EXPECT_EQ(identifiers(scheduler->pending()), QStringList{"2026-05-12-yatsi"});
    EXPECT_EQ(changed.count(), 1);

    // The machine slept through Öğle: ten minutes late, it is dropped without a word.
    QSignalSpy fired(scheduler.get(), &NotificationScheduler::fired);
    scheduler->reschedule(plan("Üsküdar", 1.5));
    ASSERT_TRUE(QTest::qWaitFor([&] { return scheduler->pending().size() == 2; }, arrivalWaitMs));
    clock->advance(600);
    ASSERT_TRUE(QTest::qWaitFor([&] { return scheduler->pending().size() == 1; }, arrivalWaitMs));
    EXPECT_EQ(identifiers(scheduler->pending()), QStringList{"2026-05-12-ikindi"});

    NotificationPlan nothing = plan();
    nothing.enabled.clear();
    scheduler->reschedule(nothing);
    ASSERT_TRUE(QTest::qWaitFor([&] { return scheduler->pending().empty(); }, arrivalWaitMs));
    QTest::qWait(100);
    EXPECT_TRUE(server->received.empty());
    EXPECT_EQ(fired.count(), 0);
}

TEST(NotificationService, DeniedOnlyWithoutRegisteredOrActivatableServer)
{
    PrivateBus bare;
    const auto scheduler = std::make_unique<NotificationScheduler>(
        std::make_shared<FreedesktopNotifications>(bare.connect()), std::make_shared<ManualClock>());
    EXPECT_TRUE(scheduler->isDenied());
    RecordingServer server({"body"});
    ASSERT_TRUE(server.registerOn(bare.connect()));
    EXPECT_FALSE(scheduler->isDenied());

    PrivateBus activatable(true);
    EXPECT_TRUE(FreedesktopNotifications(activatable.connect()).isAvailable());
}
