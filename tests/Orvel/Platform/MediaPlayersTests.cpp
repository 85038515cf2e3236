#include "PrivateBus.h"
#include "MprisPlayers.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QThread>

#include <atomic>

using namespace orvel;

namespace {

// A media player as MPRIS describes it, answering from a thread of its own as another process
// would.
class FakePlayer : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)

public:
    explicit FakePlayer(QString status)
        : status_(std::move(status))
    {
    }
    QString playbackStatus() const { return status_; }

    std::atomic<int> pauses = 0;
    std::atomic<int> plays = 0;

public slots:
    Q_SCRIPTABLE void Pause() { ++pauses; }
    Q_SCRIPTABLE void Play() { ++plays; }

private:
    QString status_;
};

} // namespace

// Only the players that were playing are paused, and exactly those go on afterwards.
TEST(MprisPlayers, PausesThePlayingAndResumesThemAlone)
{
    test::PrivateBus bus;
    QThread thread;
    FakePlayer playing(QStringLiteral("Playing")), paused(QStringLiteral("Paused"));
    playing.moveToThread(&thread);
    paused.moveToThread(&thread);
    thread.start();
    QDBusConnection musicSide = bus.connect(), videoSide = bus.connect();
    const auto options = QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties;
    ASSERT_TRUE(musicSide.registerObject("/org/mpris/MediaPlayer2", &playing, options));
    ASSERT_TRUE(musicSide.registerService("org.mpris.MediaPlayer2.music"));
    ASSERT_TRUE(videoSide.registerObject("/org/mpris/MediaPlayer2", &paused, options));
    ASSERT_TRUE(videoSide.registerService("org.mpris.MediaPlayer2.video"));

    const QDBusConnection ours = bus.connect();
    MprisPlayers players(ours);
    players.pausePlaying();
    EXPECT_TRUE(QTest::qWaitFor([&] { return playing.pauses == 1; }, 5000));
    players.resumePaused();
    EXPECT_TRUE(QTest::qWaitFor([&] { return playing.plays == 1; }, 5000));
    // Once resumed, they are forgotten.
    players.resumePaused();
    // Whatever was sent to the video player before this question has been handled by the time
    // it is answered.
    ASSERT_TRUE(test::roundTrip(ours, QDBusMessage::createMethodCall("org.mpris.MediaPlayer2.video", "/org/mpris/MediaPlayer2",
                                                                     "org.freedesktop.DBus.Properties", "GetAll")
                                          << QStringLiteral("org.mpris.MediaPlayer2.Player")));
    ASSERT_TRUE(test::roundTrip(ours, QDBusMessage::createMethodCall("org.mpris.MediaPlayer2.music", "/org/mpris/MediaPlayer2",
                                                                     "org.freedesktop.DBus.Properties", "GetAll")
                                          << QStringLiteral("org.mpris.MediaPlayer2.Player")));
    EXPECT_EQ(paused.pauses + paused.plays, 0) << "a paused player is left as it was";
    EXPECT_EQ(playing.plays, 1) << "resumed once";

    musicSide.unregisterObject("/org/mpris/MediaPlayer2");
    videoSide.unregisterObject("/org/mpris/MediaPlayer2");
    thread.quit();
    thread.wait();
}

#include "MediaPlayersTests.moc"
