#include "Snapshot.h"

#include "CalculationMethod.h"
#include "DayKey.h"
#include "OrvelFormat.h"
#include "Prayer.h"
#include "PrayerCalculator.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

using namespace orvel;

namespace {

// The six times the calculator gives, in the summary's form.
QString calculatedTimesLine(const DayKey &day, const Location &location)
{
    const DayTimes times = PrayerCalculator::times(day, location, CalculationMethod::diyanet);
    QStringList items;
    for (const Prayer::Value prayer : Prayer::allCases) {
        const std::string_view name = Prayer(prayer).name();
        items << QString::fromUtf8(name.data(), name.size()) + ' '
                + QString::fromStdString(OrvelFormat::time(times[prayer], location.timeZone()));
    }
    return items.join("  ");
}

} // namespace

// The built program, started as a user would, with its own home and no reachable web service.
TEST(Snapshot, WritesThePicturesAndTheSummaryOffline)
{
    QTemporaryDir home;
    ASSERT_TRUE(home.isValid());
    const QString out = home.filePath("çıktı/alt");

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home.path());
    environment.insert("XDG_CONFIG_HOME", home.filePath("config"));
    environment.insert("XDG_DATA_HOME", home.filePath("data"));
    environment.insert("XDG_CACHE_HOME", home.filePath("cache"));
    environment.insert("TZ", "UTC");
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    environment.remove("QT_QPA_PLATFORM");
    environment.remove("QT_SCALE_FACTOR");

    QProcess orvel;
    orvel.setProcessEnvironment(environment);
    orvel.start(ORVEL_EXECUTABLE, {"--now", "2026-03-10T12:30", "--snapshot", out, "--uskudar", "--service",
                                   "http://127.0.0.1:1"});
    ASSERT_TRUE(orvel.waitForFinished(120'000)) << orvel.errorString().toStdString();
    const QString errors = QString::fromUtf8(orvel.readAllStandardError());
    ASSERT_EQ(orvel.exitStatus(), QProcess::NormalExit) << errors.toStdString();
    EXPECT_EQ(orvel.exitCode(), 0) << errors.toStdString();

    const QStringList lines = QString::fromUtf8(orvel.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2) << lines.join('\n').toStdString();
    EXPECT_EQ(lines[0], "source=offline location=İstanbul, Üsküdar");
    EXPECT_EQ(lines[1], calculatedTimesLine(DayKey{2026, 3, 10}, Snapshot::uskudar()));

    const QDir folder(out);
    std::map<QString, QImage> pictures;
    for (const char *name : {"popover-light", "popover-dark", "menubar-light", "menubar-dark"}) {
        SCOPED_TRACE(name);
        const QImage picture(folder.filePath(QString(name) + ".png"));
        ASSERT_FALSE(picture.isNull());
        pictures[name] = picture;
    }
    EXPECT_EQ(pictures["popover-light"].width(), 660);
    EXPECT_EQ(pictures["popover-dark"].width(), 660);
    EXPECT_GT(pictures["popover-light"].height(), 640);
    EXPECT_EQ(pictures["popover-light"].size(), pictures["popover-dark"].size());
    // Six rows of 22-point images, 8 points apart, 12 points of padding, at 2x.
    EXPECT_GE(pictures["menubar-light"].height(), 2 * (12 + 6 * 22 + 5 * 8 + 12));
    EXPECT_GT(pictures["menubar-light"].width(), 2 * (12 + 100 + 22));
    // Light and dark are drawn on different window colours.
    EXPECT_GT(qGray(pictures["popover-light"].pixel(4, 4)), 160);
    EXPECT_LT(qGray(pictures["popover-dark"].pixel(4, 4)), 96);
    EXPECT_GT(qGray(pictures["menubar-light"].pixel(4, 4)), 160);
    EXPECT_LT(qGray(pictures["menubar-dark"].pixel(4, 4)), 96);

    // The user's own settings file was neither read nor written.
    EXPECT_FALSE(QFile::exists(home.filePath("config/Orvel/Orvel.conf")));
}
