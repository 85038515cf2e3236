#include "SoundLibrary.h"
#include "SoundTestSupport.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace orvel;
using namespace orvel::test;

namespace {

class SoundLibraryTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(temp.isValid());
        // A folder that does not exist yet, two levels down.
        SoundLibrary::setFolder(temp.filePath(QStringLiteral("data/Sounds")));
        ASSERT_TRUE(QDir().mkpath(sources()));
    }
    void TearDown() override { SoundLibrary::setFolder(QString()); }

    QString sources() const { return temp.filePath(QStringLiteral("picked")); }
    QString source(const QString &name, const QByteArray &bytes) const
    {
        const QString path = QDir(sources()).filePath(name);
        EXPECT_TRUE(writeFile(path, bytes));
        return path;
    }
    QStringList customFiles() const
    {
        return QDir(SoundLibrary::folder()).entryList({QStringLiteral("custom*")}, QDir::Files);
    }

    QTemporaryDir temp;
};

TEST_F(SoundLibraryTest, ChimeIsWrittenOnceAndAgainWhenDeleted)
{
    const std::optional<QString> chime = SoundLibrary::chimePath();
    ASSERT_TRUE(chime.has_value());
    EXPECT_EQ(*chime, QDir(SoundLibrary::folder()).filePath(QStringLiteral("chime.wav")));
    EXPECT_EQ(readFile(*chime), chimeBytes());

    // A present file is kept as it is, whatever it holds.
    ASSERT_TRUE(writeFile(*chime, "kept"));
    EXPECT_EQ(SoundLibrary::chimePath(), chime);
    EXPECT_EQ(readFile(*chime), QByteArray("kept"));

    ASSERT_TRUE(QFile::remove(*chime));
    EXPECT_EQ(SoundLibrary::chimePath(), chime);
    EXPECT_EQ(readFile(*chime), chimeBytes());

    // A folder below a plain file cannot be created: no chime, no crash.
    ASSERT_TRUE(writeFile(temp.filePath(QStringLiteral("plain")), "x"));
    SoundLibrary::setFolder(temp.filePath(QStringLiteral("plain/Sounds")));
    EXPECT_FALSE(SoundLibrary::chimePath().has_value());
}

TEST_F(SoundLibraryTest, CustomPathFindsOnlyTheCustomFile)
{
    EXPECT_FALSE(SoundLibrary::customPath().has_value()); // folder missing

    const QDir dir(SoundLibrary::folder());
    ASSERT_TRUE(dir.mkpath(QStringLiteral("custom"))); // a folder is not a sound
    ASSERT_TRUE(writeFile(dir.filePath(QStringLiteral("customer.mp3")), "x"));
    ASSERT_TRUE(writeFile(dir.filePath(QStringLiteral("my-custom.mp3")), "x"));
    ASSERT_TRUE(writeFile(dir.filePath(QStringLiteral("chime.wav")), "x"));
    EXPECT_FALSE(SoundLibrary::customPath().has_value());

    ASSERT_TRUE(writeFile(dir.filePath(QStringLiteral("custom.ogg")), "x"));
    EXPECT_EQ(SoundLibrary::customPath(), dir.filePath(QStringLiteral("custom.ogg")));
}

TEST_F(SoundLibraryTest, ImportStoresOneCustomFileUnderTheSourceExtension)
{
    if (!mediaBackendAvailable())
        GTEST_SKIP() << "no Qt multimedia backend can be loaded here, so no file can be checked";
    const QDir dir(SoundLibrary::folder());
    const QByteArray first = chimeBytes();

    const auto upper = SoundLibrary::importCustom(source(QStringLiteral("Ezan.MP3"), first));
    ASSERT_TRUE(upper.ok()) << upper.error.toStdString();
    EXPECT_EQ(upper.displayName, QStringLiteral("Ezan.MP3"));
    EXPECT_EQ(customFiles(), QStringList{QStringLiteral("custom.mp3")});
    EXPECT_EQ(SoundLibrary::customPath(), dir.filePath(QStringLiteral("custom.mp3")));
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("custom.mp3"))), first);

    // A second import replaces the first, whatever its extension.
    QByteArray second = first;
    second[second.size() - 1] = 1;
    const auto bare = SoundLibrary::importCustom(source(QStringLiteral("Ezan sesi"), second));
    ASSERT_TRUE(bare.ok()) << bare.error.toStdString();
    EXPECT_EQ(bare.displayName, QStringLiteral("Ezan sesi"));
    EXPECT_EQ(customFiles(), QStringList{QStringLiteral("custom.m4a")});
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("custom.m4a"))), second);

    // Importing the stored file itself keeps it.
    const auto again = SoundLibrary::importCustom(dir.filePath(QStringLiteral("custom.m4a")));
    ASSERT_TRUE(again.ok()) << again.error.toStdString();
    EXPECT_EQ(customFiles(), QStringList{QStringLiteral("custom.m4a")});
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("custom.m4a"))), second);
}

TEST_F(SoundLibraryTest, RefusedImportsKeepTheEarlierFile)
{
    if (!mediaBackendAvailable())
        GTEST_SKIP() << "no Qt multimedia backend can be loaded here, so no file can be checked";
    ASSERT_TRUE(SoundLibrary::importCustom(source(QStringLiteral("ezan.wav"), chimeBytes())).ok());
    const QString stored = QDir(SoundLibrary::folder()).filePath(QStringLiteral("custom.wav"));

    const auto noise = SoundLibrary::importCustom(source(QStringLiteral("x.mp3"), noiseBytes()));
    EXPECT_FALSE(noise.ok());
    EXPECT_TRUE(noise.displayName.isEmpty());
    EXPECT_TRUE(noise.error.contains(QStringLiteral("çalınamıyor"))) << noise.error.toStdString();
    EXPECT_TRUE(noise.error.contains(QStringLiteral("x.mp3")));

    const auto missing = SoundLibrary::importCustom(QDir(sources()).filePath("yok.mp3"));
    EXPECT_FALSE(missing.ok());
    EXPECT_TRUE(missing.error.contains(QStringLiteral("yok.mp3"))) << missing.error.toStdString();

    EXPECT_EQ(customFiles(), QStringList{QStringLiteral("custom.wav")});
    EXPECT_EQ(readFile(stored), chimeBytes());

    ASSERT_TRUE(writeFile(temp.filePath(QStringLiteral("plain")), "x"));
    SoundLibrary::setFolder(temp.filePath(QStringLiteral("plain/Sounds")));
    const auto noFolder = SoundLibrary::importCustom(QDir(sources()).filePath("ezan.wav"));
    EXPECT_FALSE(noFolder.ok());
    EXPECT_TRUE(noFolder.error.contains(QStringLiteral("klasörü oluşturulamadı")))
        << noFolder.error.toStdString();
}

} // namespace
