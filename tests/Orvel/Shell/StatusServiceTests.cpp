#include "PrivateBus.h"
#include "AdhanPlayer.h"
#include "DBusStatusService.h"
#include "OrvelApp.h"
#include "OrvelFormat.h"
#include "Panel.h"
#include "ShellTestSupport.h"
#include "SoundLibrary.h"

#include <gtest/gtest.h>


#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QProcess>
#include <QTest>

#include <cmath>

using namespace orvel;

namespace {

const QString service = DBusStatusService::serviceName;
const QString path = DBusStatusService::objectPath;
const QString interface = DBusStatusService::interfaceName;

// A script on the bus: hears every PropertiesChanged of Orvel's status.
class Script : public QObject {
    Q_OBJECT

public:
    explicit Script(QDBusConnection connection)
        : connection_(std::move(connection))
    {
        connection_.connect(service, path, "org.freedesktop.DBus.Properties", "PropertiesChanged", this,
                            SLOT(changed(QString, QVariantMap, QStringList)));
    }

    // Calls without blocking, so that Orvel, served by this thread, can answer.
    QDBusMessage call(const QString &interfaceName, const QString &method, const QVariantList &arguments = {})
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interfaceName, method);
        message.setArguments(arguments);
        QDBusPendingCall pending = connection_.asyncCall(message);
        (void)QTest::qWaitFor([&] { return pending.isFinished(); }, 5000);
        // Signals Orvel sent before its answer were queued here before the answer came.
        QCoreApplication::sendPostedEvents();
        return pending.reply();
    }

    QVariantMap properties()
    {
        const QDBusMessage reply = call("org.freedesktop.DBus.Properties", "GetAll", {interface});
        return qdbus_cast<QVariantMap>(reply.arguments().value(0));
    }

    QList<QStringList> signalled; // the names of the properties in each signal

public slots:
    void changed(const QString &, const QVariantMap &properties, const QStringList &)
    {
        QStringList names = properties.keys();
        names.sort();
        signalled << names;
    }

private:
    QDBusConnection connection_;
};

QString isoAt(Instant instant)
{
    return "2026-03-10T" + QString::fromStdString(OrvelFormat::time(instant, TimeZone::named("Europe/Istanbul"))) + ":00+03:00";
}

QString remaining(Instant from, Instant to)
{
    return QString::fromStdString(OrvelFormat::compact(static_cast<int64_t>(std::ceil((to - from) / 60))));
}

struct Running {
    test::PrivateBus bus;
    test::OfflineModel offline;
    AppModel &model;
    OrvelApp app;
    std::unique_ptr<DBusStatusService> status;

    explicit Running(Instant start)
        : offline(start)
        , model(*offline.model)
        , app(std::move(offline.model), std::make_unique<test::FakeStatusItem>(true))
    {
        serve();
    }
    ~Running() { status.reset(); }

    void serve()
    {
        status = std::make_unique<DBusStatusService>(bus.connect());
        app.publishTo(*status);
    }
};

} // namespace

TEST(DBusStatusService, PropertiesFollowTheModelAndEachRealChangeIsToldOnce)
{
    const DayTimes day = test::testDay();
    const Instant start = day[Prayer::ogle] + 3600;
    Running orvel(start);
    Script script(orvel.bus.connect());

    const QVariantMap first = script.properties();
    EXPECT_EQ(first.value("Title").toString(), "İkindi " + remaining(start, day[Prayer::ikindi]));
    EXPECT_EQ(first.value("Label").toString(), orvel.model.accessibilityLabel());
    EXPECT_EQ(first.value("State").toString(), "normal");
    EXPECT_EQ(first.value("NextName").toString(), "İkindi");
    EXPECT_EQ(first.value("NextMoment").toString(), isoAt(day[Prayer::ikindi]));

    // A tick within the minute tells nothing; the next minute tells the title and the label once.
    // Reading the properties is a round trip: every signal sent before the answer is in.
    const auto settle = [&](qsizetype count) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return script.signalled.size() >= count; }, 5000));
        script.properties();
        EXPECT_EQ(script.signalled.size(), count);
    };
    orvel.offline.moveTo(start + 20);
    orvel.status->publish(orvel.model.publishedStatus());
    script.properties();
    EXPECT_TRUE(script.signalled.isEmpty());
    orvel.offline.moveTo(start + 60);
    settle(1);
    EXPECT_EQ(script.signalled.back(), (QStringList{"Label", "Title"}));

    // The title follows the chosen style; with the icon alone it keeps the words for panels.
    orvel.model.set(Settings::trayStyle, TrayStyle::nameAndTime);
    settle(2);
    EXPECT_EQ(script.signalled.back(), QStringList{"Title"});
    EXPECT_EQ(script.properties().value("Title").toString(),
              "İkindi " + QString::fromStdString(OrvelFormat::time(day[Prayer::ikindi], orvel.model.zone())));
    orvel.offline.moveTo(start + 120);
    settle(3);
    EXPECT_EQ(script.signalled.back(), QStringList{"Label"});
    orvel.model.set(Settings::trayStyle, TrayStyle::iconOnly);
    settle(4);
    orvel.model.set(Settings::trayStyle, TrayStyle::nameAndRemaining);
    script.properties();
    EXPECT_EQ(script.signalled.size(), 4) << "the icon-only title is the name and the time left";

    // Kerahat after sunrise; then İkindi enters and everything changes at once.
    orvel.offline.moveTo(day[Prayer::gunes] + 600);
    settle(5);
    EXPECT_EQ(script.properties().value("State").toString(), "kerahat");
    orvel.offline.moveTo(day[Prayer::ikindi] + 10);
    settle(6);
    EXPECT_EQ(script.signalled.back(), (QStringList{"Label", "NextMoment", "NextName", "State", "Title"}));
    const QVariantMap entered = script.properties();
    EXPECT_EQ(entered.value("Title").toString(), "İkindi vakti");
    EXPECT_EQ(entered.value("State").toString(), "entry");
    EXPECT_EQ(entered.value("NextName").toString(), "İftar") << "10 March 2026 is in Ramadan";
    EXPECT_EQ(entered.value("NextMoment").toString(), isoAt(day[Prayer::aksam]));

    // A second Orvel cannot take the name.
    const QDBusConnectionInterface &names = *orvel.bus.connect().interface();
    const QString owner = names.serviceOwner(service).value();
    ASSERT_FALSE(owner.isEmpty());
    DBusStatusService second(orvel.bus.connect());
    EXPECT_EQ(names.serviceOwner(service).value(), owner);
}

TEST(DBusStatusService, MethodsOpenThePanelAndTheWindows)
{
    Running orvel(test::testDay()[Prayer::ogle]);
    Script script(orvel.bus.connect());
    const auto shown = [&](const char *id) {
        return QTest::qWaitFor([&] {
            const QWidget *window = orvel.app.windows().window(QString::fromLatin1(id));
            return window && window->isVisible();
        }, 2000);
    };
    EXPECT_EQ(script.call(interface, "OpenImsakiye").type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(shown(Windows::imsakiye));
    script.call(interface, "OpenSettings");
    EXPECT_TRUE(shown(Windows::settings));
    EXPECT_FALSE(orvel.app.panel().isVisible());
    script.call(interface, "ShowPanel");
    EXPECT_TRUE(QTest::qWaitFor([&] { return orvel.app.panel().isVisible(); }, 2000));
    // Asked again, the same window comes forward.
    QWidget *imsakiye = orvel.app.windows().window(QString::fromLatin1(Windows::imsakiye));
    script.call(interface, "OpenImsakiye");
    EXPECT_EQ(orvel.app.windows().window(QString::fromLatin1(Windows::imsakiye)), imsakiye);
    orvel.app.panel().hide();
}

// While Orvel's own sound plays, Playing says so, and StopSound silences it.
TEST(DBusStatusService, StopSoundSilencesOrvelsOwnSound)
{
    Running orvel(test::testDay()[Prayer::ogle] + 600);
    Script script(orvel.bus.connect());
    const std::optional<QString> chime = SoundLibrary::chimePath();
    ASSERT_TRUE(chime.has_value());
    EXPECT_EQ(script.properties().value("Playing"), QVariant(false));

    orvel.model.player().play(*chime, 0.0);
    ASSERT_TRUE(orvel.model.player().isPlaying());
    EXPECT_EQ(script.properties().value("Playing"), QVariant(true));
    EXPECT_EQ(script.call(interface, "StopSound").type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !orvel.model.player().isPlaying(); }, 2000));
    EXPECT_EQ(script.properties().value("Playing"), QVariant(false));
}

// orvel-cli follows the running Orvel: one line per change of its title, its own clock while
// Orvel is away, and Orvel's words again when it is back.
TEST(DBusStatusService, TheCommandLineFollowsIt)
{
    const DayTimes day = test::testDay();
    const Instant start = day[Prayer::ogle] + 3600;
    Running orvel(start);

    QProcess cli;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", orvel.bus.address());
    environment.insert("XDG_CONFIG_HOME", orvel.offline.folder.filePath("cli-config"));
    cli.setProcessEnvironment(environment);
    cli.start(ORVEL_CLI_PATH, {"status", "--follow", "--offline", "--format", "line"});
    QStringList lines;
    const auto nextLine = [&] {
        if (!QTest::qWaitFor([&] { return cli.canReadLine(); }, 5000))
            return QString();
        lines << QString::fromUtf8(cli.readLine()).chopped(1);
        return lines.back();
    };
    EXPECT_EQ(nextLine(), "İkindi " + remaining(start, day[Prayer::ikindi]));
    orvel.offline.moveTo(start + 60);
    EXPECT_EQ(nextLine(), "İkindi " + remaining(start + 60, day[Prayer::ikindi]));
    orvel.model.set(Settings::trayStyle, TrayStyle::remaining);
    EXPECT_EQ(nextLine(), remaining(start + 60, day[Prayer::ikindi]));

    // Orvel leaves: the command's own clock and place speak, with a name before the time left.
    orvel.status.reset();
    EXPECT_TRUE(nextLine().contains(u' ')) << lines.join(" | ").toStdString();
    orvel.serve();
    EXPECT_EQ(nextLine(), remaining(start + 60, day[Prayer::ikindi]));
    // Nothing twice: the line after that is the next minute's.
    orvel.offline.moveTo(start + 120);
    EXPECT_EQ(nextLine(), remaining(start + 120, day[Prayer::ikindi]));
    cli.terminate();
    cli.waitForFinished(5000);
}

#include "StatusServiceTests.moc"
