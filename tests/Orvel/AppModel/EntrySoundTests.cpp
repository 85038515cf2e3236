#include "AppModelTestSupport.h"

#include "AdhanPlayer.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace orvel::test {
namespace {

// How many times the player was started.
int starts(const QSignalSpy &playing)
{
    int count = 0;
    for (const QList<QVariant> &arguments : playing)
        count += arguments.at(0).toBool() ? 1 : 0;
    return count;
}

// Minutes after local midnight of an instant on this machine.
int64_t minuteOfDay(Instant instant)
{
    return static_cast<int64_t>(instant - DayKey::from(instant, TimeZone::current()).start(TimeZone::current())) / 60;
}

class EntrySound : public ::testing::Test {
protected:
    EntrySound()
        : harness(at(2026, 6, 10, 4, 0))
        , model(harness.model())
        , playing(&model->player(), &AdhanPlayer::isPlayingChanged)
    {
        model->setAdhanSound(AdhanSound::chime);
        EXPECT_TRUE(reloadAndWait(*model));
    }

    void enter(Prayer prayer, double secondsAfter)
    {
        harness.clock->set((*model->today())[prayer] + secondsAfter);
        model->tick();
    }

    Harness harness;
    std::unique_ptr<AppModel> model;
    QSignalSpy playing;
};

TEST_F(EntrySound, PlaysOncePerEntry)
{
    enter(Prayer::ogle, 5);
    EXPECT_EQ(starts(playing), 1);
    EXPECT_TRUE(QFile::exists(harness.folder.filePath("Sounds/chime.wav")));
    enter(Prayer::ogle, 30);
    enter(Prayer::ogle, 59);
    enter(Prayer::ogle, 75);
    EXPECT_EQ(starts(playing), 1);

    enter(Prayer::ikindi, 0);
    EXPECT_EQ(starts(playing), 2);

    // A frozen clock never sounds.
    const auto frozen = harness.model((*model->today())[Prayer::aksam] + 5);
    QSignalSpy frozenPlaying(&frozen->player(), &AdhanPlayer::isPlayingChanged);
    frozen->setAdhanSound(AdhanSound::chime);
    ASSERT_TRUE(reloadAndWait(*frozen));
    frozen->tick();
    EXPECT_EQ(starts(frozenPlaying), 0);
}

TEST_F(EntrySound, NeverForGunesNorForAPrayerLeftOut)
{
    model->setNotifiedPrayers({Prayer::gunes, Prayer::imsak});
    enter(Prayer::gunes, 5);
    EXPECT_EQ(starts(playing), 0);

    enter(Prayer::ogle, 5);
    EXPECT_EQ(starts(playing), 0);
    // Switched on within the same minute: the entry was not yet handled, so it sounds now.
    model->setNotifiedPrayers({Prayer::ogle});
    enter(Prayer::ogle, 20);
    EXPECT_EQ(starts(playing), 1);
}

TEST_F(EntrySound, QuietHoursSwallowTheWholeEntry)
{
    const int64_t ogle = minuteOfDay((*model->today())[Prayer::ogle]);
    model->setQuietHours({true, ogle - 30, ogle + 30});
    enter(Prayer::ogle, 5);
    EXPECT_EQ(starts(playing), 0);

    model->setQuietHours({false, ogle - 30, ogle + 30});
    enter(Prayer::ogle, 40);
    EXPECT_EQ(starts(playing), 0);

    enter(Prayer::ikindi, 5);
    EXPECT_EQ(starts(playing), 1);
}

TEST_F(EntrySound, SystemAndNoneLeaveThePlayerAlone)
{
    model->setAdhanSound(AdhanSound::system);
    enter(Prayer::ogle, 5);
    model->setAdhanSound(AdhanSound::none);
    enter(Prayer::ikindi, 5);
    model->previewSound();
    EXPECT_EQ(starts(playing), 0);
    EXPECT_FALSE(model->player().hasPlayer());

    // Preview plays the chime, and a second press stops it.
    model->setAdhanSound(AdhanSound::chime);
    model->previewSound();
    EXPECT_TRUE(model->player().isPlaying());
    model->previewSound();
    EXPECT_FALSE(model->player().isPlaying());
    EXPECT_EQ(starts(playing), 1);
}

} // namespace
} // namespace orvel::test
