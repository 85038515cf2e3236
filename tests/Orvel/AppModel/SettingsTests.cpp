#include "AppModelTestSupport.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

namespace orvel::test {
namespace {

using Key = Defaults::Key;
using Set = std::set<Prayer::Value>;

const Instant morning = at(2026, 3, 10, 10, 0, 30);

// Writes the store file as an earlier run (or a hand edit) left it.
void writeStoreFile(const QString &path, const QByteArray &text)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("[General]\n" + text);
}

TEST(AppModelSettings, FirstStartGivesEveryDefault)
{
    Harness harness(morning);
    const auto model = harness.model();

    EXPECT_EQ(model->location(), Location::istanbul());
    EXPECT_EQ(model->location().name, "İstanbul, Fatih");
    EXPECT_EQ(model->method(), CalculationMethod::diyanet);
    EXPECT_EQ(model->menuBarStyle(), MenuBarStyle::nameAndRemaining);
    EXPECT_EQ(model->notifiedPrayers(), (Set{Prayer::imsak, Prayer::ogle, Prayer::ikindi, Prayer::aksam, Prayer::yatsi}));
    EXPECT_EQ(model->reminderMinutes(), 0);
    EXPECT_TRUE(model->showKerahat());
    EXPECT_TRUE(model->kerahatMenuDot());
    EXPECT_FALSE(model->kerahatNotify());
    EXPECT_EQ(model->kerahatMinutes(), 45);
    EXPECT_TRUE(model->ramadanMode());
    EXPECT_EQ(model->adhanSound(), AdhanSound::system);
    EXPECT_EQ(model->customSoundName(), std::nullopt);
    EXPECT_DOUBLE_EQ(model->soundVolume(), 0.8);
    EXPECT_EQ(model->quietHours(), (QuietHours{false, 1380, 420}));

    EXPECT_FALSE(model->today());
    EXPECT_FALSE(model->isLoading());
    EXPECT_EQ(model->now(), at(2026, 3, 10, 10, 0));
    // Reading the settings writes nothing.
    EXPECT_TRUE(Defaults::store().allKeys().isEmpty());
}

TEST(AppModelSettings, OddStoredValuesGiveTheirDefaultsOrAreCleaned)
{
    Harness harness(morning);
    const QString path = harness.folder.filePath("odd.conf");

    writeStoreFile(path, "notified=@Invalid()\n"
                         "kerahatMinutes=30\n"
                         "customSoundName=\n"
                         "method=hanafi\n"
                         "menuBarStyle=remaining\n"
                         "reminder=abc\n"
                         "kerahatShow=maybe\n"
                         "kerahatDot=0\n"
                         "soundVolume=loud\n"
                         "location=not json\n"
                         "quietHours=@ByteArray({\\\"enabled\\\":true})\n"
                         "adhanSound=chime\n");
    Harness::useStore(path);
    auto model = harness.model();
    EXPECT_EQ(model->notifiedPrayers(), Set{});
    EXPECT_EQ(model->kerahatMinutes(), 45);
    EXPECT_EQ(model->customSoundName(), std::nullopt);
    EXPECT_EQ(model->method(), CalculationMethod::diyanet);
    EXPECT_EQ(model->menuBarStyle(), MenuBarStyle::remaining);
    EXPECT_EQ(model->reminderMinutes(), 0);
    EXPECT_TRUE(model->showKerahat());
    EXPECT_FALSE(model->kerahatMenuDot());
    EXPECT_DOUBLE_EQ(model->soundVolume(), 0.8);
    EXPECT_EQ(model->location(), Location::istanbul());
    EXPECT_EQ(model->quietHours(), QuietHours());
    EXPECT_EQ(model->adhanSound(), AdhanSound::chime);

    writeStoreFile(path, "notified=ogle, bogus\n"
                         "kerahatMinutes=50\n"
                         "kerahatNotify=true\n"
                         "reminder=15\n"
                         "soundVolume=0.25\n"
                         "location=@ByteArray({\\\"name\\\":\\\"Far\\\",\\\"latitude\\\":400,\\\"longitude\\\":0,"
                         "\\\"timeZoneID\\\":\\\"UTC\\\"})\n");
    Harness::useStore(path);
    model = harness.model();
    EXPECT_EQ(model->notifiedPrayers(), Set{Prayer::ogle});
    EXPECT_EQ(model->kerahatMinutes(), 50);
    EXPECT_TRUE(model->kerahatNotify());
    EXPECT_EQ(model->reminderMinutes(), 15);
    EXPECT_DOUBLE_EQ(model->soundVolume(), 0.25);
    EXPECT_EQ(model->location(), Location::istanbul()) << "a latitude of 400 is no place";

    // Values stored with their own types (another writer, or the same run) convert too.
    Defaults::write(Key::kerahatMinutes, 40);
    Defaults::write(Key::kerahatShow, QStringLiteral("FALSE"));
    Defaults::write(Key::notified, QStringLiteral("aksam"));
    Defaults::write(Key::method, 3);
    model = harness.model();
    EXPECT_EQ(model->kerahatMinutes(), 40);
    EXPECT_FALSE(model->showKerahat());
    EXPECT_EQ(model->notifiedPrayers(), Set{Prayer::aksam});
    EXPECT_EQ(model->method(), CalculationMethod::diyanet);
}

TEST(AppModelSettings, WhatTheSettersStoreIsReadBackByTheNextRun)
{
    Harness harness(morning);
    const Location ankara{"Ankara, Çankaya", 39.9208, 32.8541, "Europe/Istanbul"};
    const QuietHours night{true, 1320, 360};
    {
        auto model = harness.model();
        model->setLocation(ankara);
        model->setMethod(CalculationMethod::mwl);
        model->setMenuBarStyle(MenuBarStyle::nameAndTime);
        model->setNotifiedPrayers({Prayer::gunes, Prayer::yatsi});
        model->setReminderMinutes(15);
        model->setShowKerahat(false);
        model->setKerahatMenuDot(false);
        model->setKerahatNotify(true);
        model->setKerahatMinutes(50);
        model->setRamadanMode(false);
        model->setAdhanSound(AdhanSound::custom);
        model->setCustomSoundName(QStringLiteral("Ezan, sabah.mp3"));
        model->setSoundVolume(0.35);
        model->setQuietHours(night);
        settleWorkers();
    }
    harness.reopenStore();
    auto model = harness.model();
    EXPECT_EQ(model->location(), ankara);
    EXPECT_EQ(model->method(), CalculationMethod::mwl);
    EXPECT_EQ(model->menuBarStyle(), MenuBarStyle::nameAndTime);
    EXPECT_EQ(model->notifiedPrayers(), (Set{Prayer::gunes, Prayer::yatsi}));
    EXPECT_EQ(model->reminderMinutes(), 15);
    EXPECT_FALSE(model->showKerahat());
    EXPECT_FALSE(model->kerahatMenuDot());
    EXPECT_TRUE(model->kerahatNotify());
    EXPECT_EQ(model->kerahatMinutes(), 50);
    EXPECT_FALSE(model->ramadanMode());
    EXPECT_EQ(model->adhanSound(), AdhanSound::custom);
    EXPECT_EQ(model->customSoundName(), QStringLiteral("Ezan, sabah.mp3"));
    EXPECT_DOUBLE_EQ(model->soundVolume(), 0.35);
    EXPECT_EQ(model->quietHours(), night);

    // The forms that trip up the INI store: one prayer, none, and no custom sound.
    model->setNotifiedPrayers({Prayer::ogle});
    harness.reopenStore();
    EXPECT_EQ(harness.model()->notifiedPrayers(), Set{Prayer::ogle});

    model->setNotifiedPrayers({});
    model->setCustomSoundName(std::nullopt);
    harness.reopenStore();
    EXPECT_EQ(harness.model()->notifiedPrayers(), Set{});
    EXPECT_EQ(Defaults::string(Key::customSoundName), QString());
    EXPECT_EQ(harness.model()->customSoundName(), std::nullopt);
}

TEST(AppModelSettings, EqualAssignmentsStayQuiet)
{
    Harness harness(morning);
    const auto model = harness.model();
    QSignalSpy changed(model.get(), &AppModel::changed);
    QSignalSpy locationChanged(model.get(), &AppModel::locationChanged);

    model->setLocation(Location::istanbul());
    model->setMethod(CalculationMethod::diyanet);
    EXPECT_EQ(changed.count(), 0);
    EXPECT_FALSE(model->isLoading()) << "an equal place must not reload";
    EXPECT_FALSE(Defaults::store().contains(QStringLiteral("location")));
    EXPECT_FALSE(Defaults::store().contains(QStringLiteral("method")));

    ASSERT_TRUE(reloadAndWait(*model));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !harness.scheduler.pending().empty(); }, loadWaitMs));
    const auto scheduled = harness.scheduler.pending();

    // An equal reminder is stored and rescheduled all the same, but observers hear nothing.
    harness.scheduler.reschedule(NotificationPlan{});
    ASSERT_TRUE(QTest::qWaitFor([&] { return harness.scheduler.pending().empty(); }, loadWaitMs));
    QSignalSpy reminderChanged(model.get(), &AppModel::reminderMinutesChanged);
    changed.clear();
    model->setReminderMinutes(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return harness.scheduler.pending() == scheduled; }, loadWaitMs));
    EXPECT_EQ(Defaults::integer(Key::reminder), 0);
    EXPECT_EQ(reminderChanged.count(), 0);
    EXPECT_EQ(changed.count(), 0);

    model->setReminderMinutes(10);
    EXPECT_EQ(reminderChanged.count(), 1);
    EXPECT_EQ(locationChanged.count(), 0);
}

} // namespace
} // namespace orvel::test
