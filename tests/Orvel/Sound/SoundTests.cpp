#include "AdhanPlayer.h"
#include "ChimeSynth.h"
#include "SoundLibrary.h"

#include <QDir>
#include <QImage>
#include <QMediaPlayer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <random>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace orvel {
namespace {

constexpr int playbackWaitMs = 15000;

QByteArray chimeBytes()
{
    const std::vector<uint8_t> bytes = ChimeSynth::wav(44100);
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size()));
}

QByteArray noiseBytes()
{
    std::mt19937 random(7);
    QByteArray bytes(20000, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Whether Qt found a media backend at all; the player is created after AdhanPlayer chose one.
bool mediaBackendAvailable()
{
    const AdhanPlayer chooser;
    return QMediaPlayer().isAvailable();
}

std::vector<bool> changes(const QSignalSpy &spy)
{
    std::vector<bool> values;
    for (const QList<QVariant> &arguments : spy)
        values.push_back(arguments.at(0).toBool());
    return values;
}

class Sound : public ::testing::Test {
protected:
    // A sounds folder that does not exist yet, two levels down.
    void SetUp() override { SoundLibrary::setFolder(temp.filePath(QStringLiteral("data/Sounds"))); }
    void TearDown() override { SoundLibrary::setFolder(QString()); }

    QString source(const QString &name, const QByteArray &bytes) const
    {
        const QString path = temp.filePath(name);
        EXPECT_TRUE(writeFile(path, bytes));
        return path;
    }
    static QString stored(const QString &name) { return QDir(SoundLibrary::folder()).filePath(name); }
    static QStringList customFiles() { return QDir(SoundLibrary::folder()).entryList({"custom*"}, QDir::Files); }
    // A folder below a plain file cannot be created.
    void useUnwritableFolder()
    {
        ASSERT_TRUE(writeFile(temp.filePath(QStringLiteral("plain")), "x"));
        SoundLibrary::setFolder(temp.filePath(QStringLiteral("plain/Sounds")));
    }

    QTemporaryDir temp;
};

TEST_F(Sound, UnplayableFilesStaySilent)
{
    AdhanPlayer player;
    QSignalSpy spy(&player, &AdhanPlayer::isPlayingChanged);
    for (const QString &path : {temp.filePath(QStringLiteral("missing.wav")), temp.path()}) {
        player.play(path, 1.0);
        EXPECT_FALSE(player.isPlaying());
        EXPECT_FALSE(player.hasPlayer());
        EXPECT_FALSE(AdhanPlayer::canDecode(path));
    }
    EXPECT_EQ(spy.count(), 0);

    // Noise is rejected by the backend: at most one start and its end.
    const QString noise = source(QStringLiteral("x.mp3"), noiseBytes());
    player.play(noise, 0.5);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !player.isPlaying(); }, playbackWaitMs));
    EXPECT_FALSE(player.hasPlayer());
    player.stop();
    const std::vector<bool> seen = changes(spy);
    EXPECT_TRUE(seen.empty() || seen == (std::vector<bool>{true, false}));
    EXPECT_FALSE(AdhanPlayer::canDecode(noise));

    // A picture decodes, but has no sound.
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    const QString png = temp.filePath(QStringLiteral("picture.mp3"));
    ASSERT_TRUE(picture.save(png, "PNG"));
    EXPECT_FALSE(AdhanPlayer::canDecode(png));
}

TEST_F(Sound, ChimePlaysUntilStoppedOrEnded)
{
    if (!mediaBackendAvailable())
        GTEST_SKIP() << "no Qt multimedia backend can be loaded here";
    const QString chime = source(QStringLiteral("chime.wav"), chimeBytes());
    EXPECT_TRUE(AdhanPlayer::canDecode(chime));

    AdhanPlayer player;
    QSignalSpy spy(&player, &AdhanPlayer::isPlayingChanged);
    player.play(chime, 0.4);
    // The volume changes on the running player, out of range or not, without restarting it.
    player.setVolume(2.0);
    player.setVolume(-1.0);
    EXPECT_TRUE(player.isPlaying());
    EXPECT_EQ(changes(spy), std::vector<bool>{true});

    player.stop();
    player.stop();
    EXPECT_TRUE(player.hasPlayer()); // kept until the next play
    EXPECT_EQ(changes(spy), (std::vector<bool>{true, false}));

    // Playing again while playing passes through idle once.
    player.play(chime, 1.0);
    player.play(chime, 1.0);
    EXPECT_EQ(changes(spy), (std::vector<bool>{true, false, true, false, true}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !player.isPlaying(); }, playbackWaitMs));
    EXPECT_FALSE(player.hasPlayer());
    EXPECT_EQ(spy.count(), 6);

    // Destroyed while playing: nothing the backend still had queued may reach the dead player.
    // A later sound played to its end is the barrier: what the backend queued before is through.
    for (const QString &path : {chime, source(QStringLiteral("x.mp3"), noiseBytes())}) {
        auto doomed = std::make_unique<AdhanPlayer>();
        doomed->play(path, 1.0);
        QCoreApplication::processEvents();
        doomed.reset();
        AdhanPlayer after;
        after.play(chime, 0.0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !after.isPlaying(); }, playbackWaitMs));
    }
}

TEST_F(Sound, ChimeIsWrittenWhenMissingAndKeptWhenPresent)
{
    const std::optional<QString> chime = SoundLibrary::chimePath();
    ASSERT_EQ(chime, stored(QStringLiteral("chime.wav")));
    EXPECT_EQ(readFile(*chime), chimeBytes());

    ASSERT_TRUE(writeFile(*chime, "kept"));
    EXPECT_EQ(SoundLibrary::chimePath(), chime);
    EXPECT_EQ(readFile(*chime), QByteArray("kept"));
    ASSERT_TRUE(QFile::remove(*chime));
    EXPECT_EQ(SoundLibrary::chimePath(), chime);
    EXPECT_EQ(readFile(*chime), chimeBytes());

    useUnwritableFolder();
    EXPECT_FALSE(SoundLibrary::chimePath().has_value());
}

TEST_F(Sound, ImportKeepsOneCustomFileUnderTheSourceExtension)
{
    if (!mediaBackendAvailable())
        GTEST_SKIP() << "no Qt multimedia backend can be loaded here, so no file can be checked";
    EXPECT_FALSE(SoundLibrary::customPath().has_value());
    const QByteArray first = chimeBytes();
    const auto upper = SoundLibrary::importCustom(source(QStringLiteral("Ezan.MP3"), first));
    ASSERT_TRUE(upper.ok()) << upper.error.toStdString();
    EXPECT_EQ(upper.displayName, QStringLiteral("Ezan.MP3"));
    EXPECT_EQ(customFiles(), QStringList{QStringLiteral("custom.mp3")});
    EXPECT_EQ(SoundLibrary::customPath(), stored(QStringLiteral("custom.mp3")));
    EXPECT_EQ(readFile(stored(QStringLiteral("custom.mp3"))), first);

    // A second import replaces the first; without an extension the file is taken as m4a.
    QByteArray second = first;
    second[second.size() - 1] = 1;
    const auto bare = SoundLibrary::importCustom(source(QStringLiteral("Ezan sesi"), second));
    ASSERT_TRUE(bare.ok()) << bare.error.toStdString();
    EXPECT_EQ(bare.displayName, QStringLiteral("Ezan sesi"));
    EXPECT_EQ(customFiles(), QStringList{QStringLiteral("custom.m4a")});

    // Importing the stored file itself keeps it.
    ASSERT_TRUE(SoundLibrary::importCustom(stored(QStringLiteral("custom.m4a"))).ok());
    EXPECT_EQ(customFiles(), QStringList{QStringLiteral("custom.m4a")});
    EXPECT_EQ(readFile(stored(QStringLiteral("custom.m4a"))), second);

    // Refused imports keep the earlier file.
    const auto noise = SoundLibrary::importCustom(source(QStringLiteral("x.mp3"), noiseBytes()));
    EXPECT_TRUE(noise.displayName.isEmpty());
    EXPECT_TRUE(noise.error.startsWith(QStringLiteral("Bu dosya çalınamıyor: “x.mp3”."))) << noise.error.toStdString();
    EXPECT_EQ(SoundLibrary::importCustom(temp.filePath(QStringLiteral("yok.mp3"))).error,
              QStringLiteral("“yok.mp3” bulunamadı ya da okunamıyor."));
    EXPECT_EQ(customFiles(), QStringList{QStringLiteral("custom.m4a")});
    EXPECT_EQ(readFile(stored(QStringLiteral("custom.m4a"))), second);

    useUnwritableFolder();
    const auto noFolder = SoundLibrary::importCustom(temp.filePath(QStringLiteral("Ezan.MP3")));
    EXPECT_TRUE(noFolder.error.startsWith(QStringLiteral("Ses klasörü oluşturulamadı: "))) << noFolder.error.toStdString();
}

} // namespace
} // namespace orvel
