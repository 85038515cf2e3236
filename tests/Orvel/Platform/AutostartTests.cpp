#include "Autostart.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QTemporaryDir>

using namespace orvel;

namespace {

// A configuration folder of the test's own for as long as it lives.
struct ConfigHome {
    QTemporaryDir dir;
    QByteArray previous = qgetenv("XDG_CONFIG_HOME");
    ConfigHome() { qputenv("XDG_CONFIG_HOME", dir.path().toUtf8()); }
    ~ConfigHome() { qputenv("XDG_CONFIG_HOME", previous); }
};

} // namespace

TEST(Autostart, WritesAndRemovesTheAutostartEntry)
{
    const ConfigHome home;
    QFile file(home.dir.filePath("autostart/io.github.orvel.Orvel.desktop"));
    ASSERT_EQ(Autostart::autostartPath(), file.fileName());
    EXPECT_FALSE(Autostart::isEnabled());
    EXPECT_EQ(Autostart::set(true), std::nullopt);
    EXPECT_TRUE(Autostart::isEnabled());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
    file.close();
    EXPECT_EQ(lines.first(), "[Desktop Entry]");
    for (const QString &line : {QString("Type=Application"), QString("X-GNOME-Autostart-enabled=true"), QString("Icon=io.github.orvel.Orvel"),
                                "Exec=\"" + QCoreApplication::applicationFilePath() + "\""})
        EXPECT_TRUE(lines.contains(line)) << line.toStdString();

    // Turning it on twice keeps one entry; off removes it, and off again is no error.
    EXPECT_EQ(Autostart::set(true), std::nullopt);
    EXPECT_EQ(Autostart::set(false), std::nullopt);
    EXPECT_FALSE(file.exists());
    EXPECT_FALSE(Autostart::isEnabled());
    EXPECT_EQ(Autostart::set(false), std::nullopt);

    // An entry the desktop switched off is off.
    ASSERT_EQ(Autostart::set(true), std::nullopt);
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("Hidden=true\n");
    file.close();
    EXPECT_FALSE(Autostart::isEnabled());
}

// An entry written by an earlier version keeps its meaning: on stays on under the new name, and
// one the desktop switched off is simply dropped.
TEST(Autostart, AFormerEntryIsCarriedOver)
{
    const ConfigHome home;
    const auto writeFormer = [&](const QByteArray &extra) {
        QDir().mkpath(home.dir.filePath("autostart"));
        QFile former(Autostart::formerAutostartPath());
        ASSERT_TRUE(former.open(QIODevice::WriteOnly));
        former.write("[Desktop Entry]\nType=Application\nExec=orvel\n" + extra);
    };
    writeFormer("");
    EXPECT_TRUE(Autostart::isEnabled());
    Autostart::migrate();
    EXPECT_TRUE(QFile::exists(Autostart::autostartPath()));
    EXPECT_FALSE(QFile::exists(Autostart::formerAutostartPath()));
    EXPECT_TRUE(Autostart::isEnabled());

    ASSERT_EQ(Autostart::set(false), std::nullopt);
    writeFormer("Hidden=true\n");
    EXPECT_FALSE(Autostart::isEnabled());
    Autostart::migrate();
    EXPECT_FALSE(QFile::exists(Autostart::autostartPath()));
    EXPECT_FALSE(QFile::exists(Autostart::formerAutostartPath()));
}

TEST(Autostart, EntryQuotingAndUnwritableFolder)
{
    const QString entry = Autostart::desktopEntry(R"(/opt/my apps/"o$rvel"\100%/orvel)");
    EXPECT_TRUE(entry.split('\n').contains(R"(Exec="/opt/my apps/\\"o\\$rvel\\"\\\\100%%/orvel")")) << entry.toStdString();

    // A file where the autostart folder belongs cannot be written through, not even by root.
    const ConfigHome blocked;
    QFile blocker(blocked.dir.filePath("autostart"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const auto error = Autostart::set(true);
    ASSERT_TRUE(error.has_value());
    EXPECT_TRUE(error->startsWith("Otomatik başlatma")) << error->toStdString();
}

// The icon the windows, the desktop file and the autostart entry show: white crescent on green,
// drawn from the SVG inside the program (which needs Qt's SVG plugin at run time).
TEST(ApplicationIcon, DrawsTheCrescentFromTheProgramsOwnResources)
{
    const QImage icon = QIcon(QStringLiteral(":/orvel/orvel.svg")).pixmap(QSize(64, 64)).toImage();
    ASSERT_EQ(icon.size(), QSize(64, 64));
    EXPECT_EQ(qAlpha(icon.pixel(0, 0)), 0);
    EXPECT_EQ(QColor(icon.pixel(16, 33)), QColor(Qt::white));
    EXPECT_EQ(QColor(icon.pixel(40, 25)).name(), "#2f9e7a");
}
