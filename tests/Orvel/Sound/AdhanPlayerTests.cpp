#include "AdhanPlayer.h"
#include "SoundTestSupport.h"

#include <QDir>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

using namespace orvel;
using namespace orvel::test;

namespace {

class AdhanPlayerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(temp.isValid());
        ASSERT_TRUE(writeFile(chime(), chimeBytes()));
        ASSERT_TRUE(writeFile(noise(), noiseBytes()));
    }

    QString chime() const { return temp.filePath(QStringLiteral("chime.wav")); }
    QString noise() const { return temp.filePath(QStringLiteral("x.mp3")); }

    QTemporaryDir temp;
};

std::vector<bool> changes(const QSignalSpy &spy)
{
    std::vector<bool> values;
    for (const QList<QVariant> &arguments : spy)
        values.push_back(arguments.at(0).toBool());
    return values;
}

// Every reported value differs from the one before it, starting from idle.
bool alternates(const std::vector<bool> &values)
{
    bool previous = false;
    for (const bool value : values) {
        if (value == previous)
            return false;
        previous = value;
    }
    return true;
}

TEST_F(AdhanPlayerTest, UnplayableFilesStaySilent)
{
    AdhanPlayer player;
    QSignalSpy spy(&player, &AdhanPlayer::isPlayingChanged);

    player.play(temp.filePath(QStringLiteral("missing.wav")), 1.0);
    EXPECT_FALSE(player.isPlaying());
    EXPECT_FALSE(player.hasPlayer());
    player.play(temp.path(), 1.0); // a folder
    EXPECT_FALSE(player.isPlaying());
    EXPECT_EQ(spy.count(), 0);

    player.play(noise(), 0.5);
    EXPECT_TRUE(waitFor([&] { return !player.isPlaying(); }));
    EXPECT_FALSE(player.hasPlayer());
    EXPECT_TRUE(alternates(changes(spy)));
    EXPECT_LE(spy.count(), 2);

    player.stop();
    EXPECT_FALSE(player.isPlaying());
    EXPECT_LE(spy.count(), 2);

    EXPECT_FALSE(AdhanPlayer::canDecode(noise()));
    EXPECT_FALSE(AdhanPlayer::canDecode(temp.filePath(QStringLiteral("missing.wav"))));
    EXPECT_FALSE(AdhanPlayer::canDecode(temp.path()));

    // A picture decodes, but has no sound.
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    const QString png = temp.filePath(QStringLiteral("picture.mp3"));
    ASSERT_TRUE(picture.save(png, "PNG"));
    EXPECT_FALSE(AdhanPlayer::canDecode(png));
}

TEST_F(AdhanPlayerTest, ChimePlaysUntilStoppedOrEnded)
{
    if (!mediaBackendAvailable())
        GTEST_SKIP() << "no Qt multimedia backend can be loaded here";
    EXPECT_TRUE(AdhanPlayer::canDecode(chime()));

    AdhanPlayer player;
    QSignalSpy spy(&player, &AdhanPlayer::isPlayingChanged);
    player.play(chime(), 0.4);
    EXPECT_TRUE(player.isPlaying());
    EXPECT_EQ(changes(spy), std::vector<bool>{true});
    player.setVolume(2.0);
    player.setVolume(-1.0);

    player.stop();
    player.stop();
    EXPECT_FALSE(player.isPlaying());
    EXPECT_TRUE(player.hasPlayer()); // kept until the next play
    EXPECT_EQ(changes(spy), (std::vector<bool>{true, false}));

    // Playing again while playing passes through idle once.
    player.play(chime(), 1.0);
    player.play(chime(), 1.0);
    EXPECT_EQ(changes(spy), (std::vector<bool>{true, false, true, false, true}));

    EXPECT_TRUE(waitFor([&] { return !player.isPlaying(); }));
    EXPECT_FALSE(player.hasPlayer());
    EXPECT_EQ(spy.count(), 6);
}

TEST_F(AdhanPlayerTest, DestroyedWhilePlaying)
{
    for (const QString &path : {chime(), noise()}) {
        auto player = std::make_unique<AdhanPlayer>();
        player->play(path, 1.0);
        QTest::qWait(50);
        player.reset();
        QTest::qWait(200); // lets the backend deliver whatever it still had queued
    }
    SUCCEED();
}

} // namespace
