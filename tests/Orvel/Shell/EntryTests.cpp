#include "Entry.h"
#include "OrvelFormat.h"
#include "QtTurkish.h"
#include "ShellTestSupport.h"
#include "SingleInstance.h"
#include "Snapshot.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QCoreApplication>
#include <QImage>
#include <QLocale>
#include <QTranslator>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTimeZone>
#include <QTemporaryDir>
#include <QUuid>

#include <sys/socket.h>
#include <sys/un.h>
#include <unicode/timezone.h>
#include <unistd.h>

using namespace orvel;

namespace {

void setMachineZone(const QByteArray &zone)
{
    qputenv("TZ", zone);
    tzset();
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(zone.constData()));
}

Instant utc(int month, int day, int hour, int minute)
{
    const QDateTime time(QDate(2026, month, day), QTime(hour, minute), QTimeZone::utc());
    return Instant::fromUnix(time.toSecsSinceEpoch());
}

} // namespace

TEST(Entry, SnapshotFolderFollowsTheSnapshotArgument)
{
    EXPECT_EQ(Entry::snapshotFolder({"orvel"}), std::nullopt);
    EXPECT_EQ(Entry::snapshotFolder({"orvel", "--uskudar", "--snapshot"}), std::nullopt);
    EXPECT_EQ(Entry::snapshotFolder({"orvel", "--now", "2026-03-10T12:30", "--snapshot", "/tmp/a b", "--uskudar"}),
              QString("/tmp/a b"));
    EXPECT_EQ(Snapshot::optionValue({"orvel", "--snapshot", "out", "--now"}, "--now"), std::nullopt);
    EXPECT_EQ(Snapshot::optionValue({"orvel", "--now", "x", "--uskudar"}, "--now"), QString("x"));
}

TEST(Entry, HelpAndVersionAnswerWithoutStarting)
{
    for (const QString argument : {"--help", "--version"}) {
        QProcess orvel;
        orvel.start(ORVEL_EXECUTABLE, {argument});
        ASSERT_TRUE(orvel.waitForFinished(30'000)) << argument.toStdString();
        EXPECT_EQ(orvel.exitCode(), 0);
        EXPECT_TRUE(orvel.readAllStandardOutput().startsWith(argument == "--help" ? "Kullanım: orvel" : "orvel "));
    }
}

// Read as strictly as orvel-cli: anything it does not know is one Turkish line and exit 2, told
// before Qt starts, so without a display too.
TEST(Entry, OptionsAreReadStrictly)
{
    const auto error = [](const QStringList &arguments) {
        const auto parsed = Entry::parse(QStringList{"orvel"} + arguments);
        return std::holds_alternative<QString>(parsed) ? std::get<QString>(parsed) : QString();
    };
    EXPECT_TRUE(error({"--frob"}).contains("--frob"));
    EXPECT_FALSE(error({"--snapshot"}).isEmpty());
    EXPECT_FALSE(error({"--snapshot", "--uskudar"}).isEmpty()) << "an option is no folder";
    EXPECT_TRUE(error({"--snapshot", "out", "--now", "yesterday"}).contains("yesterday"));
    EXPECT_FALSE(error({"--snapshot", "out", "--now", "2026-13-45T99:99"}).isEmpty());
    EXPECT_FALSE(error({"--now", "2026-03-10T12:30"}).isEmpty()) << "--now draws nothing without --snapshot";
    const auto parsed = Entry::parse({"orvel", "--now", "2026-03-10T12:30", "--snapshot", "out", "--uskudar"});
    ASSERT_TRUE(std::holds_alternative<Entry::Options>(parsed));
    EXPECT_EQ(std::get<Entry::Options>(parsed),
              (Entry::Options{false, false, QString("out"), QString("2026-03-10T12:30"), true, std::nullopt}));

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(name);
    QProcess orvel;
    orvel.setProcessEnvironment(environment);
    orvel.start(ORVEL_EXECUTABLE, {"--frob"});
    ASSERT_TRUE(orvel.waitForFinished(30'000));
    EXPECT_EQ(orvel.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(orvel.exitCode(), 2);
    const QString said = QString::fromUtf8(orvel.readAllStandardError());
    EXPECT_TRUE(said.startsWith("orvel: bilinmeyen seçenek: --frob")) << said.toStdString();
    EXPECT_EQ(said.count(u'\n'), 1);
}

TEST(Entry, QtsOwnDialogsSpeakTurkish)
{
    const QLocale saved;
    ASSERT_TRUE(QtTurkish::install(*QCoreApplication::instance())) << "qt6-translations-l10n is missing";
    const auto restore = qScopeGuard([&] {
        for (QTranslator *translator : QCoreApplication::instance()->findChildren<QTranslator *>(Qt::FindDirectChildrenOnly)) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
        QLocale::setDefault(saved);
    });
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), QString("İptal"));
    EXPECT_TRUE(QCoreApplication::translate("QFileDialog", "File &name:").startsWith("Dosya"));
    EXPECT_EQ(QLocale().language(), QLocale::Turkish);
}

TEST(Snapshot, NowIsReadAsIstanbulTimeWhateverTheMachineZone)
{
    const auto restore = qScopeGuard([previous = qgetenv("TZ")] { setMachineZone(previous); });
    for (const char *machineZone : {"UTC", "America/New_York", "Asia/Tokyo"}) {
        SCOPED_TRACE(machineZone);
        setMachineZone(machineZone);
        EXPECT_EQ(Snapshot::parseNow("2026-03-10T12:30"), utc(3, 10, 9, 30));
        EXPECT_EQ(Snapshot::parseNow("2026-07-01T00:05"), utc(6, 30, 21, 5));
        // 02:30 on 2026-03-08 does not exist in New York; Istanbul has it.
        EXPECT_EQ(Snapshot::parseNow("2026-03-08T02:30"), utc(3, 7, 23, 30));
    }
    for (const char *bad : {"", "2026-03-10", "2026-03-10 12:30", "2026-02-30T10:00", "2026-03-10T25:00",
                            "2026-03-10T12:30:00", "yarın"}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(Snapshot::parseNow(bad), std::nullopt);
    }
}

// A picture that cannot be written is named, and nothing half-written is left.
TEST(Snapshot, APictureThatCannotBeWrittenIsAnError)
{
    QTemporaryDir home;
    QFile blocker(home.filePath("dosya"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    QImage image(4, 4, QImage::Format_ARGB32);
    image.fill(Qt::red);
    EXPECT_THROW(Snapshot::savePng(image, home.filePath("dosya/a.png")), Snapshot::WriteError);
    EXPECT_NO_THROW(Snapshot::savePng(image, home.filePath("a.png")));
    EXPECT_GT(QFileInfo(home.filePath("a.png")).size(), 0);

    // The program says so and fails when its folder cannot be made.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(name);
    environment.insert("HOME", home.path());
    QProcess orvel;
    orvel.setProcessEnvironment(environment);
    orvel.start(ORVEL_EXECUTABLE, {"--snapshot", home.filePath("dosya/alt"), "--service", "http://127.0.0.1:1"});
    ASSERT_TRUE(orvel.waitForFinished(120'000));
    EXPECT_EQ(orvel.exitCode(), 1);
    EXPECT_TRUE(QString::fromUtf8(orvel.readAllStandardError()).contains(home.filePath("dosya/alt")));
}

// The built program, started as a user would, with its own home and no reachable web service.
TEST(Snapshot, WritesThePicturesAndTheSummaryOffline)
{
    QTemporaryDir home;
    const QString out = home.filePath("çıktı/alt");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home.path());
    for (const char *folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        environment.insert(folder, home.filePath(folder));
    environment.insert("TZ", "UTC");
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_SCALE_FACTOR"})
        environment.remove(name);
    QProcess orvel;
    orvel.setProcessEnvironment(environment);
    orvel.start(ORVEL_EXECUTABLE,
                {"--now", "2026-03-10T12:30", "--snapshot", out, "--uskudar", "--service", "http://127.0.0.1:1"});
    ASSERT_TRUE(orvel.waitForFinished(120'000)) << orvel.errorString().toStdString();
    ASSERT_TRUE(orvel.exitStatus() == QProcess::NormalExit && orvel.exitCode() == 0)
        << orvel.readAllStandardError().toStdString();

    const DayTimes day = test::testDay();
    QStringList times;
    for (const Prayer::Value prayer : Prayer::all)
        times << QString::fromUtf8(Prayer(prayer).name()) + ' '
                + QString::fromStdString(OrvelFormat::time(day[prayer], Snapshot::uskudar().timeZone()));
    // Each timetable page is announced once per appearance.
    const QString imsakiye = "imsakiye week: 7 gün, 2026-03-09 … 2026-03-15\n"
                             "imsakiye month: 31 gün, 2026-03-01 … 2026-03-31\n"
                             "imsakiye ramadan: 29 gün, 2026-02-19 … 2026-03-19\n";
    EXPECT_EQ(QString::fromUtf8(orvel.readAllStandardOutput()),
              imsakiye + imsakiye + "source=rule location=İstanbul, Üsküdar\n" + times.join("  ") + '\n'
                  + "kandil: 2026-03-16 Kadir Gecesi\n");

    std::map<QString, QImage> pictures;
    for (const QString name : {"popover-light", "popover-dark", "menubar-light", "menubar-dark", "imsakiye-week-light",
                               "imsakiye-week-dark", "imsakiye-month-light", "imsakiye-month-dark",
                               "imsakiye-ramadan-light", "imsakiye-ramadan-dark", "settings-light", "settings-dark",
                               "settings-notifications-light", "settings-notifications-dark", "settings-kerahat-light",
                               "settings-kerahat-dark", "settings-sound-light", "settings-sound-dark", "popover-kandil-light"}) {
        SCOPED_TRACE(name.toStdString());
        const QImage picture(QDir(out).filePath(name + ".png"));
        ASSERT_FALSE(picture.isNull());
        // Light and dark are drawn on different window colours.
        const int gray = qGray(picture.pixel(4, 4));
        EXPECT_TRUE(name.endsWith("light") ? gray > 160 : gray < 96) << gray;
        pictures[name] = picture;
    }
    EXPECT_EQ(pictures["popover-light"].width(), 660);
    EXPECT_GT(pictures["popover-light"].height(), 640);
    EXPECT_EQ(pictures["popover-light"].size(), pictures["popover-dark"].size());
    // Six rows of 22-point images, 8 points apart, 12 points of padding, at 2x.
    EXPECT_GE(pictures["menubar-light"].height(), 2 * (12 + 6 * 22 + 5 * 8 + 12));
    EXPECT_GT(pictures["menubar-light"].width(), 2 * (12 + 100 + 22));
    EXPECT_EQ(pictures["imsakiye-week-dark"].size(), QSize(1520, 800));
    EXPECT_EQ(pictures["imsakiye-month-light"].size(), QSize(1520, 1400));
    EXPECT_EQ(pictures["imsakiye-ramadan-dark"].size(), QSize(1520, 2260));
    for (const QString name : {"settings", "settings-notifications", "settings-kerahat", "settings-sound"})
        EXPECT_EQ(pictures[name + "-light"].width(), 1120) << name.toStdString();
    // The sound picture shows the file row and the quiet hours, so it is the taller one.
    EXPECT_GT(pictures["settings-sound-light"].height(), pictures["settings-notifications-light"].height());
    // The user's own settings file was neither read nor written.
    EXPECT_FALSE(QFile::exists(home.filePath("XDG_CONFIG_HOME/Orvel/Orvel.conf")));
}

// A crashed run leaves its socket file behind with nobody listening; the next start takes it
// over, and every later start asks that one to show itself.
TEST(SingleInstance, StaleSocketTakenOverAndLaterStartsAskToShow)
{
    const QString name = QDir::tempPath() + "/orvel-test-" + QUuid::createUuid().toString(QUuid::Id128) + ".socket";
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(name).constData(), sizeof(address.sun_path));
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
    ::close(fd);

    SingleInstance first(name);
    QSignalSpy shown(&first, &SingleInstance::showRequested);
    ASSERT_EQ(first.claim(), SingleInstance::Claim::primary);
    for (int start = 1; start <= 2; ++start) {
        SingleInstance later(name);
        EXPECT_EQ(later.claim(), SingleInstance::Claim::alreadyRunning);
        ASSERT_TRUE(shown.wait(5000));
        EXPECT_EQ(shown.count(), start);
    }
}

TEST(SingleInstance, DefaultNameIsPrivateToTheUser)
{
    const QByteArray previous = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", QDir::tempPath().toUtf8());
    EXPECT_EQ(SingleInstance::defaultServerName(), QDir::tempPath() + "/orvel.socket");
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_TRUE(QRegularExpression("^orvel-[0-9a-f]{16}$").match(SingleInstance::defaultServerName()).hasMatch());
    qputenv("XDG_RUNTIME_DIR", previous);
}
