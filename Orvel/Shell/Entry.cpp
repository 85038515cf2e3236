#include "Entry.h"

#include "AppId.h"
#include "AppModel.h"
#include "DiyanetCalendar.h"
#include "Gazetteer.h"
#include "Autostart.h"
#include "Clock.h"
#include "NotificationScheduler.h"
#include "OrvelApp.h"
#include "Platform.h"
#include "PrayerRepository.h"
#include "QtTurkish.h"
#include "QuitSignals.h"
#include "SettingsWatcher.h"
#include "SingleInstance.h"
#include "Snapshot.h"
#include "StatusItem.h"
#include "StatusService.h"
#include "SystemEvents.h"
#include "MediaPlayers.h"

#include <QApplication>
#include <QIcon>

#include <cstdio>

namespace orvel::Entry {

namespace {

constexpr auto usage =
    "Kullanım: orvel [--snapshot KLASÖR [--now YYYY-AA-GGTSS:DD] [--uskudar]]\n"
    "\n"
    "Seçenek verilmezse Orvel panelde simgesiyle açılır; zaten açıksa paneli öne getirir.\n"
    "\n"
    "  --snapshot KLASÖR  Görünümleri açık ve koyu görünümde PNG olarak KLASÖR'e yazar,\n"
    "                     verinin özetini yazdırır ve çıkar. Resimler 2x piksel yoğunluğundadır:\n"
    "                     330 noktalık panel 660 piksel genişliğindedir.\n"
    "  --now ZAMAN        Saati İstanbul saatiyle bu ana sabitler (örn. 2026-03-10T12:30).\n"
    "  --uskudar          İstanbul, Üsküdar konumunu kullanır.\n"
    "  --service ADRES    Vakit servisinin kök adresi (varsayılan Aladhan).\n"
    "  --help             Bu yardımı gösterir.\n"
    "  --version          Sürümü gösterir.\n";

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

// Without a window system the views are still drawn, on Qt's off-screen platform.
void prepareSnapshotPlatform()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void describeApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("Orvel"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orvel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVEL_VERSION));
    // The desktop (and geoclue, asking for the position) knows Orvel by its desktop file.
    QGuiApplication::setDesktopFileName(QString::fromLatin1(AppId::id));
}

int runApplication(int argc, char **argv)
{
    describeApplication();
    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    application.setWindowIcon(QIcon(QStringLiteral(":/orvel/orvel.svg")));
    QtTurkish::install(application);
    Gazetteer::speakTurkish();
    if (const auto problem = Settings::problem())
        std::fprintf(stderr, "orvel: uyarı: %s\n", qPrintable(*problem));

    SingleInstance instance(SingleInstance::defaultServerName());
    if (instance.claim() == SingleInstance::Claim::alreadyRunning)
        return 0;

    Autostart::migrate();
    DiyanetCalendar::keepMonthStartsIn(PrayerRepository::defaultCacheDirectory() / DiyanetCalendar::storeFileName);
    // The application's one clock, for the model and the notices alike, and the desktop's
    // services. They belong to the application object, so that they go before the bus
    // connection does.
    const auto clock = std::make_shared<SystemClock>();
    auto *scheduler = new NotificationScheduler(Platform::notifications(), clock, &application);
    const AppModel::Services services{clock, nullptr, scheduler, Platform::systemEvents(&application),
                                      Platform::mediaPlayers(&application)};
    OrvelApp app(std::make_unique<AppModel>(services, ModelRun::live, ModelVoice::audible), Platform::statusItem());
    // orvel-cli and other copies write the same store; the running application follows them.
    const SettingsWatcher settingsWatcher(SettingsStore::store().fileName());
    QObject::connect(&settingsWatcher, &SettingsWatcher::changed, &app.model(), &AppModel::adoptStoredSettings);
    QObject::connect(&instance, &SingleInstance::showRequested, &app, &OrvelApp::showPanel);
    app.publishTo(*Platform::statusService(&app));
    const QuitSignals *quitSignals = Platform::quitSignals(&application);
    QObject::connect(quitSignals, &QuitSignals::quitRequested, &application, &QCoreApplication::quit);
    app.start();
    return application.exec();
}

int runSnapshot(int argc, char **argv, const QString &folder, const QStringList &arguments)
{
    prepareSnapshotPlatform();
    describeApplication();
    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    QtTurkish::install(application);
    Gazetteer::speakTurkish();
    return Snapshot::run(folder, arguments);
}

} // namespace

std::optional<QString> snapshotFolder(const QStringList &arguments)
{
    const qsizetype index = arguments.indexOf(QStringLiteral("--snapshot"));
    if (index < 0 || index + 1 >= arguments.size())
        return std::nullopt;
    return arguments.at(index + 1);
}

std::variant<Options, QString> parse(const QStringList &arguments)
{
    Options options;
    const auto valueAfter = [&](qsizetype &i) -> std::optional<QString> {
        if (i + 1 >= arguments.size() || arguments.at(i + 1).startsWith(QLatin1String("--")))
            return std::nullopt;
        return arguments.at(++i);
    };
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            options.help = true;
        } else if (argument == QLatin1String("--version")) {
            options.version = true;
        } else if (argument == QLatin1String("--uskudar")) {
            options.uskudar = true;
        } else if (argument == QLatin1String("--snapshot")) {
            options.snapshotFolder = valueAfter(i);
            if (!options.snapshotFolder || options.snapshotFolder->isEmpty())
                return QStringLiteral("--snapshot bir klasör ister");
        } else if (argument == QLatin1String("--service")) {
            options.service = valueAfter(i);
            if (!options.service)
                return QStringLiteral("--service bir adres ister");
        } else if (argument == QLatin1String("--now")) {
            options.now = valueAfter(i);
            if (!options.now)
                return QStringLiteral("--now bir zaman ister (örn. 2026-03-10T12:30)");
            if (!Snapshot::parseNow(*options.now))
                return QStringLiteral("geçersiz zaman: %1 (YYYY-AA-GGTSS:DD olmalı, örn. 2026-03-10T12:30)").arg(*options.now);
        } else {
            return QStringLiteral("bilinmeyen seçenek: %1").arg(argument);
        }
    }
    if (!options.snapshotFolder && !options.help && !options.version && (options.now || options.uskudar || options.service))
        return QStringLiteral("--now, --uskudar ve --service yalnız --snapshot ile kullanılır");
    return options;
}

int main(int argc, char **argv)
{
    const QStringList arguments = argumentsOf(argc, argv);
    // Read before Qt starts: a wrong option must not need a display to be told.
    const std::variant<Options, QString> parsed = parse(arguments);
    if (const QString *error = std::get_if<QString>(&parsed)) {
        std::fprintf(stderr, "orvel: %s (yardım için: orvel --help)\n", qPrintable(*error));
        return 2;
    }
    const Options &options = std::get<Options>(parsed);
    if (options.help) {
        std::fputs(usage, stdout);
        return 0;
    }
    if (options.version) {
        std::printf("orvel %s\n", ORVEL_VERSION);
        return 0;
    }
    if (options.snapshotFolder)
        return runSnapshot(argc, argv, *options.snapshotFolder, arguments);
    return runApplication(argc, argv);
}

} // namespace orvel::Entry
