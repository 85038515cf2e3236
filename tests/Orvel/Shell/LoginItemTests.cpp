#include "LoginItem.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace orvel;

namespace {

QString readAll(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

class ConfigHome {
public:
    ConfigHome()
        : previous_(qgetenv("XDG_CONFIG_HOME"))
    {
        qputenv("XDG_CONFIG_HOME", dir_.path().toUtf8());
    }
    ~ConfigHome() { qputenv("XDG_CONFIG_HOME", previous_); }
    QString path() const { return dir_.path(); }

private:
    QTemporaryDir dir_;
    QByteArray previous_;
};

} // namespace

TEST(LoginItem, WritesAndRemovesTheAutostartEntry)
{
    const ConfigHome home;
    const QString path = home.path() + "/autostart/orvel.desktop";
    ASSERT_EQ(LoginItem::autostartPath(), path);
    EXPECT_FALSE(LoginItem::isEnabled());

    EXPECT_EQ(LoginItem::set(true), std::nullopt);
    ASSERT_TRUE(QFileInfo::exists(path));
    EXPECT_TRUE(LoginItem::isEnabled());
    const QStringList lines = readAll(path).split('\n');
    EXPECT_EQ(lines.first(), "[Desktop Entry]");
    EXPECT_TRUE(lines.contains("Type=Application"));
    EXPECT_TRUE(lines.contains("Name=Orvel"));
    EXPECT_TRUE(lines.contains("X-GNOME-Autostart-enabled=true"));
    EXPECT_TRUE(lines.contains("Exec=\"" + QCoreApplication::applicationFilePath() + "\""));

    // Turning it on twice keeps one entry; off removes it, and off again is no error.
    EXPECT_EQ(LoginItem::set(true), std::nullopt);
    EXPECT_EQ(LoginItem::set(false), std::nullopt);
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_FALSE(LoginItem::isEnabled());
    EXPECT_EQ(LoginItem::set(false), std::nullopt);
}

TEST(LoginItem, EntryQuotingAndStatesSwitchedOffByTheDesktop)
{
    const QString entry = LoginItem::desktopEntry(R"(/opt/my apps/"o$rvel"\100%/orvel)");
    EXPECT_TRUE(entry.split('\n').contains(R"(Exec="/opt/my apps/\\"o\\$rvel\\"\\\\100%%/orvel")")) << entry.toStdString();

    const ConfigHome home;
    ASSERT_EQ(LoginItem::set(true), std::nullopt);
    QFile file(LoginItem::autostartPath());
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("Hidden=true\n");
    file.close();
    EXPECT_FALSE(LoginItem::isEnabled());

    // A file where the autostart folder belongs cannot be written through, not even by root.
    const ConfigHome blocked;
    QFile blocker(blocked.path() + "/autostart");
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const auto error = LoginItem::set(true);
    ASSERT_TRUE(error.has_value());
    EXPECT_TRUE(error->startsWith("Otomatik başlatma")) << error->toStdString();
}
