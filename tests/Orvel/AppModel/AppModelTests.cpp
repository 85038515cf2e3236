#include "AdhanPlayer.h"
#include "AppModel.h"
#include "MediaPlayers.h"
#include "Settings.h"
#include "HijriDate.h"
#include "NotificationBackend.h"
#include "NotificationScheduler.h"
#include "OrvelFormat.h"
#include "DiyanetCalendar.h"
#include "PrayerCalculator.h"
#include "SettingsWatcher.h"
#include "SoundLibrary.h"
#include "SystemEvents.h"

#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <condition_variable>
#include <mutex>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace orvel::test {
namespace {

constexpr int loadWaitMs = 10000;

// An instant given as wall-clock time in a zone.
Instant at(int64_t year, int64_t month, int64_t day, int hour, int minute, int second = 0,
           std::string_view zone = "Europe/Istanbul")
{
    return DayKey{year, month, day}.start(TimeZone::named(zone)) + hour * 3600.0 + minute * 60.0 + second;
}

// The online source as the repository sees it: whole months from the calculator, a failure on
// demand, and the months of one place held back until released.
struct MonthSource : std::enable_shared_from_this<MonthSource> {
    PrayerRepository::MonthFetch fetch()
    {
        return [self = shared_from_this()](MonthKey month, const Location &location, CalculationMethod method) {
            std::unique_lock lock(self->mutex);
            self->asked.push_back(month);
            self->released.wait(lock, [&] { return self->heldPlace != location.name; });
            if (self->failing)
                throw std::runtime_error("no network");
            std::vector<DayTimes> days;
            for (const DayKey &day : month.days())
                days.push_back(PrayerCalculator::times(day, location, method));
            return days;
        };
    }
    void release()
    {
        const std::lock_guard lock(mutex);
        heldPlace.clear();
        released.notify_all();
    }
    std::vector<MonthKey> askedSoFar()
    {
        const std::lock_guard lock(mutex);
        return asked;
    }

    std::mutex mutex;
    std::condition_variable released;
    bool failing = false; // set only while no load runs
    std::string heldPlace;
    std::vector<MonthKey> asked;
};

struct SilentBackend : NotificationBackend {
    bool isAvailable() const override { return true; }
    void show(const NotificationRequest &request) override { shown.push_back(request); }
    std::vector<NotificationRequest> shown;
};

// Everything a model needs, kept away from the user's settings, cache and sounds.
struct Harness {
    explicit Harness(Instant start)
        : clock(std::make_shared<ManualClock>(start))
        , repository(std::make_shared<PrayerRepository>(folder.filePath("Cache").toStdString(), source->fetch()))
        , scheduler(std::make_shared<SilentBackend>(), clock)
    {
        useStore(folder.filePath("Orvel.conf"));
        SoundLibrary::setFolder(folder.filePath("Sounds"));
    }
    ~Harness()
    {
        source->release();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::sendPostedEvents();
        SettingsStore::setStore(nullptr);
        SoundLibrary::setFolder(QString());
    }

    // Diyanet's rule never asks the service; these tests are about the service.
    static void useServiceMethod() { Settings::method.write(CalculationMethod::mwl); }

    static void useStore(const QString &path)
    {
        SettingsStore::setStore(std::make_unique<QSettings>(path, QSettings::IniFormat));
    }

    // The store as the next run reads it: written out, then parsed afresh from a copy, as
    // QSettings shares parsed files within one process.
    void reopenStore()
    {
        SettingsStore::store().sync();
        const QString copy = folder.filePath(QStringLiteral("Orvel-%1.conf").arg(++reopened));
        QFile::copy(SettingsStore::store().fileName(), copy);
        useStore(copy);
    }

    std::unique_ptr<AppModel> model(SystemEvents *events = nullptr)
    {
        return std::make_unique<AppModel>(AppModel::Services{clock, repository, &scheduler, events},
                                          events ? ModelRun::live : ModelRun::still, ModelVoice::audible);
    }

    // A silent model on a clock of its own that stands still at `at`, as the snapshot's does.
    std::unique_ptr<AppModel> silentModel(Instant at)
    {
        return std::make_unique<AppModel>(
            AppModel::Services{std::make_shared<ManualClock>(at), repository, &scheduler, nullptr}, ModelRun::still,
            ModelVoice::silent);
    }

    QTemporaryDir folder;
    std::shared_ptr<ManualClock> clock;
    std::shared_ptr<MonthSource> source = std::make_shared<MonthSource>();
    std::shared_ptr<PrayerRepository> repository;
    NotificationScheduler scheduler;
    int reopened = 0;
};

bool reloadAndWait(AppModel &model)
{
    QSignalSpy finished(&model, &AppModel::loadFinished);
    model.reload();
    return finished.wait(loadWaitMs);
}

// Lets every running load finish and delivers what it posted to the UI thread.
void settleWorkers()
{
    QThreadPool::globalInstance()->waitForDone(loadWaitMs);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

TEST(AppModelClock, RollsOverAtThePlacesMidnight)
{
    Harness harness(at(2026, 3, 1, 23, 59, 59, "Asia/Tokyo"));
    Settings::location.write(Location{"Tokyo", 35.6762, 139.6503, "Asia/Tokyo"});
    const auto model = harness.model();
    ASSERT_TRUE(reloadAndWait(*model));
    ASSERT_EQ(model->today()->day, (DayKey{2026, 3, 1}));

    // 00:00 in Tokyo is still the afternoon of the 1st on this machine.
    QSignalSpy finished(model.get(), &AppModel::loadFinished);
    harness.clock->advance(1);
    model->tick();
    EXPECT_EQ(model->now(), at(2026, 3, 2, 0, 0, 0, "Asia/Tokyo"));
    ASSERT_TRUE(finished.wait(loadWaitMs));
    EXPECT_EQ(model->today()->day, (DayKey{2026, 3, 2}));

    // A zone id that names no zone falls back to the machine's.
    model->set(Settings::location, {"Nowhere", 41, 29, "Mars/Olympus"});
    harness.clock->set(at(2026, 3, 2, 23, 59, 30));
    ASSERT_TRUE(reloadAndWait(*model));
    EXPECT_EQ(model->today()->day, (DayKey{2026, 3, 2}));
    harness.clock->advance(30);
    model->tick();
    ASSERT_TRUE(finished.wait(loadWaitMs));
    EXPECT_EQ(model->today()->day, (DayKey{2026, 3, 3}));
}

TEST(AppModelClock, RetriesTheOnlineSourceAfterHalfAnHourOffline)
{
    const Instant start = at(2026, 3, 10, 10, 0, 30);
    Harness harness(start);
    harness.useServiceMethod();
    harness.source->failing = true;
    const auto model = harness.model();
    ASSERT_TRUE(reloadAndWait(*model));
    ASSERT_EQ(model->source(), TimesSource::offline);
    harness.clock->set(start + 1799);
    model->tick();
    EXPECT_FALSE(model->isLoading());

    QSignalSpy finished(model.get(), &AppModel::loadFinished);
    harness.source->failing = false;
    harness.clock->set(start + 1801);
    model->tick();
    ASSERT_TRUE(finished.wait(loadWaitMs));
    EXPECT_EQ(model->source(), TimesSource::online);

    harness.clock->set(start + 4000);
    model->tick();
    EXPECT_FALSE(model->isLoading()) << "online again: no more retries";
}

TEST(AppModelClock, OnlyTheNewestLoadIsApplied)
{
    Harness harness(at(2026, 3, 10, 10, 0));
    harness.useServiceMethod();
    Settings::location.write(Location{"Ankara", 39.9208, 32.8541, "Europe/Istanbul"});
    harness.source->heldPlace = "Ankara";
    const auto model = harness.model();
    QSignalSpy finished(model.get(), &AppModel::loadFinished);

    model->reload();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !harness.source->askedSoFar().empty(); }, loadWaitMs));
    model->set(Settings::location, Location::istanbul());
    ASSERT_TRUE(finished.wait(loadWaitMs));
    const DayTimes istanbulDay = PrayerCalculator::times({2026, 3, 10}, Location::istanbul(), CalculationMethod::mwl);
    EXPECT_EQ(model->today(), istanbulDay);

    // The held-back answer for Ankara arrives last and is dropped.
    harness.source->release();
    settleWorkers();
    EXPECT_EQ(finished.count(), 1);
    EXPECT_EQ(model->today(), istanbulDay);
    EXPECT_FALSE(model->isLoading());
}

TEST(AppModelClock, FrozenClockShowsItsOwnMinuteAndSchedulesNothing)
{
    Harness harness(at(2026, 3, 10, 10, 0));
    const auto model = harness.silentModel(at(2026, 11, 16, 12, 34, 56));
    EXPECT_EQ(model->dateLine(), QStringLiteral("16 Kasım 2026 Pazartesi")) << "no Hijri date before the load";
    ASSERT_TRUE(reloadAndWait(*model));
    // Diyanet's calendar, the default method's.
    const std::string hijri = DiyanetCalendar::date({2026, 11, 16}).formatted();
    EXPECT_EQ(model->dateLine(), QString::fromStdString("16 Kasım 2026 Pazartesi · " + hijri));

    harness.clock->advance(7200);
    model->tick();
    settleWorkers();
    EXPECT_EQ(model->now(), at(2026, 11, 16, 12, 34));
    EXPECT_TRUE(harness.scheduler.pending().empty());
}

TEST(AppModelClock, PrefetchesNextMonthFromThe25th)
{
    const std::vector<std::pair<Instant, std::vector<MonthKey>>> cases{
        {at(2026, 3, 25, 10, 0), {{2026, 3}, {2026, 4}}},
        {at(2026, 2, 25, 10, 0), {{2026, 2}, {2026, 3}}},
        {at(2026, 3, 24, 10, 0), {{2026, 3}}},
    };
    for (const auto &[start, expected] : cases) {
        Harness harness(start);
        harness.useServiceMethod();
        ASSERT_TRUE(reloadAndWait(*harness.model()));
        settleWorkers();
        EXPECT_EQ(harness.source->askedSoFar(), expected);
    }
}

TEST(AppModelClock, SystemEventsStartLoads)
{
    Harness harness(at(2026, 3, 10, 10, 0));
    SystemEvents events;
    const auto model = harness.model(&events);
    QSignalSpy finished(model.get(), &AppModel::loadFinished);
    ASSERT_TRUE(finished.wait(loadWaitMs)) << "starting the services starts the first load";
    for (const auto signal : {&SystemEvents::wokeFromSleep, &SystemEvents::clockChanged, &SystemEvents::timeZoneChanged}) {
        emit(events.*signal)();
        ASSERT_TRUE(finished.wait(loadWaitMs));
    }
}

using Set = std::set<Prayer::Value>;

const Instant morning = at(2026, 3, 10, 10, 0, 30);

// The store file as an earlier run (or a hand edit) left it.
void useStoreFile(const QString &path, const QByteArray &text)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("[General]\n" + text);
    file.close();
    Harness::useStore(path);
}

TEST(AppModelSettings, FirstStartGivesEveryDefaultAndWritesNothing)
{
    Harness harness(morning);
    const auto model = harness.model();
    EXPECT_EQ(model->setting(Settings::location), Location::istanbul());
    EXPECT_EQ(model->setting(Settings::location).name, "İstanbul, Fatih");
    EXPECT_EQ(model->setting(Settings::method), CalculationMethod::diyanet);
    EXPECT_EQ(model->setting(Settings::trayStyle), TrayStyle::nameAndRemaining);
    EXPECT_EQ(model->setting(Settings::notifiedPrayers),
              (Set {Prayer::imsak, Prayer::ogle, Prayer::ikindi, Prayer::aksam, Prayer::yatsi}));
    EXPECT_EQ(model->setting(Settings::reminderMinutes), 0);
    EXPECT_TRUE(model->setting(Settings::showKerahat));
    EXPECT_TRUE(model->setting(Settings::kerahatMenuDot));
    EXPECT_FALSE(model->setting(Settings::kerahatNotify));
    EXPECT_EQ(model->setting(Settings::kerahatMinutes), 45);
    EXPECT_TRUE(model->setting(Settings::ramadanMode));
    EXPECT_EQ(model->setting(Settings::adhanSound), AdhanSound::system);
    EXPECT_EQ(model->setting(Settings::customSoundName), std::nullopt);
    EXPECT_DOUBLE_EQ(model->setting(Settings::soundVolume), 0.8);
    EXPECT_EQ(model->setting(Settings::quietHours), (QuietHours {false, 1380, 420}));
    EXPECT_EQ(model->setting(Settings::iconRemaining), std::nullopt);
    // Left to the panel: the time left in the icon only where no title shows beside it.
    EXPECT_TRUE(model->showsIconRemaining(false));
    EXPECT_FALSE(model->showsIconRemaining(true));
    EXPECT_TRUE(SettingsStore::store().allKeys().isEmpty());
}

TEST(AppModelSettings, OddStoredValuesGiveTheirDefaults)
{
    Harness harness(morning);
    const QString path = harness.folder.filePath("odd.conf");
    useStoreFile(path, "notified=@Invalid()\nkerahatMinutes=30\ncustomSoundName=\nmethod=hanafi\n"
                       "menuBarStyle=remaining\nreminder=abc\nkerahatShow=maybe\nkerahatDot=0\nsoundVolume=loud\n"
                       "location=not json\nquietHours=@ByteArray({\\\"enabled\\\":true})\nadhanSound=Chime\n"
                       "iconRemaining=maybe\n");
    auto model = harness.model();
    EXPECT_EQ(model->setting(Settings::notifiedPrayers), Set {});
    EXPECT_EQ(model->setting(Settings::kerahatMinutes), 45);
    EXPECT_EQ(model->setting(Settings::customSoundName), std::nullopt);
    EXPECT_EQ(model->setting(Settings::method), CalculationMethod::diyanet);
    EXPECT_EQ(model->setting(Settings::trayStyle), TrayStyle::remaining);
    EXPECT_EQ(model->setting(Settings::reminderMinutes), 0);
    EXPECT_TRUE(model->setting(Settings::showKerahat));
    EXPECT_FALSE(model->setting(Settings::kerahatMenuDot));
    EXPECT_DOUBLE_EQ(model->setting(Settings::soundVolume), 0.8);
    EXPECT_EQ(model->setting(Settings::location), Location::istanbul());
    EXPECT_EQ(model->setting(Settings::quietHours), QuietHours());
    EXPECT_EQ(model->setting(Settings::adhanSound), AdhanSound::system);
    EXPECT_EQ(model->setting(Settings::iconRemaining), std::nullopt);

    useStoreFile(path, "notified=ogle, bogus\nkerahatMinutes=50\nadhanSound=chime\niconRemaining=0\n"
                       "location=@ByteArray({\\\"name\\\":\\\"Far\\\",\\\"latitude\\\":400,\\\"longitude\\\":0,"
                       "\\\"timeZoneID\\\":\\\"UTC\\\"})\n");
    model = harness.model();
    EXPECT_EQ(model->setting(Settings::notifiedPrayers), Set {Prayer::ogle});
    EXPECT_EQ(model->setting(Settings::kerahatMinutes), 50);
    EXPECT_EQ(model->setting(Settings::adhanSound), AdhanSound::chime);
    EXPECT_EQ(model->setting(Settings::iconRemaining), false);
    EXPECT_FALSE(model->showsIconRemaining(false)) << "the user's choice wins over the panel";
    EXPECT_EQ(model->setting(Settings::location), Location::istanbul()) << "a latitude of 400 is no place";
}

// A value is checked when it is set, not only when the next run reads it back: a Friday
// reminder of 17 minutes is refused at once rather than stored and dropped at the next start. A
// setting stored under the name an earlier version gave it keeps the user's choice, and moves to
// its present name at the next change.
TEST(AppModelSettings, ValuesAreCheckedWhenSetAndFormerNamesStillRead)
{
    Harness harness(morning);
    useStoreFile(harness.folder.filePath("former.conf"), "menuBarStyle=remaining\n");
    auto model = harness.model();
    EXPECT_EQ(model->setting(Settings::trayStyle), TrayStyle::remaining);

    QSignalSpy changes(model.get(), &AppModel::settingChanged);
    model->set(Settings::fridayMinutes, 17);
    model->set(Settings::soundVolume, 1.5);
    model->set(Settings::kerahatMinutes, 30);
    model->set(Settings::location, Location{"Far", 400, 0, "UTC"});
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(model->setting(Settings::fridayMinutes), 0);
    EXPECT_FALSE(SettingsStore::store().contains(QStringLiteral("fridayReminder")));

    model->set(Settings::fridayMinutes, 30);
    model->set(Settings::trayStyle, TrayStyle::iconOnly);
    EXPECT_EQ(changes.count(), 2);
    EXPECT_FALSE(SettingsStore::store().contains(QStringLiteral("menuBarStyle")));
    harness.reopenStore();
    model = harness.model();
    EXPECT_EQ(model->setting(Settings::trayStyle), TrayStyle::iconOnly);
    EXPECT_EQ(model->setting(Settings::fridayMinutes), 30);
}

TEST(AppModelSettings, FormsThatTripUpTheStoreAreReadBackByTheNextRun)
{
    Harness harness(morning);
    auto model = harness.model();
    model->set(Settings::notifiedPrayers, {Prayer::ogle});
    model->set(Settings::customSoundName, QStringLiteral("Ezan, sabah.mp3"));
    model->set(Settings::quietHours, {true, 1320, 360});
    harness.reopenStore();
    model = harness.model();
    EXPECT_EQ(model->setting(Settings::notifiedPrayers), Set {Prayer::ogle});
    EXPECT_EQ(model->setting(Settings::customSoundName), QStringLiteral("Ezan, sabah.mp3"));
    EXPECT_EQ(model->setting(Settings::quietHours), (QuietHours {true, 1320, 360}));

    model->set(Settings::notifiedPrayers, {});
    model->set(Settings::customSoundName, std::nullopt);
    model->set(Settings::iconRemaining, true);
    harness.reopenStore();
    EXPECT_EQ(harness.model()->setting(Settings::notifiedPrayers), Set {});
    EXPECT_EQ(harness.model()->setting(Settings::customSoundName), std::nullopt);
    EXPECT_EQ(harness.model()->setting(Settings::iconRemaining), true);

    // Back to the panel's choice: nothing is stored, and a change is told once.
    model = harness.model();
    QSignalSpy changes(model.get(), &AppModel::settingChanged);
    model->set(Settings::iconRemaining, std::nullopt);
    model->set(Settings::iconRemaining, std::nullopt);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(changes.front().front().toString(), "iconRemaining");
    EXPECT_FALSE(SettingsStore::store().contains(QStringLiteral("iconRemaining")));
}

TEST(AppModelSettings, EqualAssignmentsStayQuiet)
{
    Harness harness(morning);
    const auto model = harness.model();
    QSignalSpy changed(model.get(), &AppModel::changed);
    model->set(Settings::location, Location::istanbul());
    model->set(Settings::method, CalculationMethod::diyanet);
    EXPECT_EQ(changed.count(), 0);
    EXPECT_FALSE(model->isLoading()) << "an equal place must not reload";
    EXPECT_FALSE(SettingsStore::store().contains(QStringLiteral("location")));
    EXPECT_FALSE(SettingsStore::store().contains(QStringLiteral("method")));
    model->set(Settings::reminderMinutes, 0);
    EXPECT_EQ(changed.count(), 0);
}

// The command line writes the same store from another process; the running model follows it
// without a restart and keeps the settings the command line did not touch.
TEST(AppModelSettings, APlaceChosenOnTheCommandLineReachesTheRunningModel)
{
    Harness harness(morning);
    const QString configHome = harness.folder.filePath(QStringLiteral("config"));
    Harness::useStore(configHome + QStringLiteral("/Orvel/Orvel.conf"));
    const auto model = harness.model();
    model->set(Settings::method, CalculationMethod::mwl);
    SettingsStore::store().sync();
    SettingsWatcher watcher(SettingsStore::store().fileName());
    QObject::connect(&watcher, &SettingsWatcher::changed, model.get(), &AppModel::adoptStoredSettings);
    QSignalSpy changes(model.get(), &AppModel::settingChanged);
    const auto changesOf = [&changes](const char *name) {
        return std::ranges::count_if(changes, [name](const QList<QVariant> &change) { return change.front() == name; });
    };

    QProcess cli;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome);
    cli.setProcessEnvironment(environment);
    // Port 9 of the loopback refuses: the gazetteer on the device answers.
    cli.start(QStringLiteral(ORVEL_CLI_PATH), {QStringLiteral("places"), QStringLiteral("Berlin"), QStringLiteral("--choose"),
                                               QStringLiteral("1"), QStringLiteral("--geocoder"), QStringLiteral("http://127.0.0.1:9")});
    ASSERT_TRUE(cli.waitForFinished(loadWaitMs));
    ASSERT_EQ(cli.exitCode(), 0) << cli.readAllStandardError().toStdString();

    ASSERT_TRUE(QTest::qWaitFor([&] { return changesOf("location") > 0; }, loadWaitMs));
    EXPECT_EQ(model->setting(Settings::location).name, "Berlin");
    EXPECT_EQ(model->setting(Settings::location).timeZoneID, "Europe/Berlin");
    EXPECT_EQ(model->setting(Settings::method), CalculationMethod::mwl);
    // The model's own rewrite of what it just read is no news: the next change from outside
    // comes through alone.
    QSettings outside(SettingsStore::store().fileName(), QSettings::IniFormat);
    outside.setValue(QStringLiteral("reminder"), 10);
    outside.sync();
    ASSERT_TRUE(QTest::qWaitFor([&] { return changesOf("reminder") > 0; }, loadWaitMs));
    EXPECT_EQ(model->setting(Settings::reminderMinutes), 10);
    EXPECT_EQ(changesOf("location"), 1);
    EXPECT_EQ(changes.count(), 2) << "nothing else changed";
}

// orvel-cli status reads the user's Ramadan, kerahat and style settings as the tray does: 42
// minutes before İftar, with Ramadan names off and kerahat at 40 minutes without its dot, both
// say "Akşam 18:xx" with no kerahat, where the defaults would say "İftar" in kerahat.
TEST(AppModelSettings, TheCommandLineStatusSaysWhatTheTraySays)
{
    const DayTimes day = PrayerCalculator::times({2026, 3, 10}, Location::istanbul(), CalculationMethod::diyanet);
    const Instant moment = day[Prayer::aksam] - 42 * 60;
    Harness harness(moment);
    const QString configHome = harness.folder.filePath(QStringLiteral("config"));
    Harness::useStore(configHome + QStringLiteral("/Orvel/Orvel.conf"));
    const auto model = harness.model();
    ASSERT_TRUE(reloadAndWait(*model));
    const auto cliStatus = [&] {
        SettingsStore::store().sync();
        QProcess cli;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome);
        cli.setProcessEnvironment(environment);
        const QString now = QString::fromStdString(OrvelFormat::pattern(moment, model->zone(), "yyyy-MM-dd'T'HH:mm"));
        cli.start(QStringLiteral(ORVEL_CLI_PATH),
                  {QStringLiteral("status"), QStringLiteral("--format"), QStringLiteral("json"), QStringLiteral("--offline"),
                   QStringLiteral("--now"), now});
        EXPECT_TRUE(cli.waitForFinished(loadWaitMs));
        return nlohmann::json::parse(cli.readAllStandardOutput().toStdString(), nullptr, false);
    };
    const auto expectSame = [&] {
        const nlohmann::json status = cliStatus();
        ASSERT_FALSE(status.is_discarded());
        const StatusLine tray = model->statusLine();
        EXPECT_EQ(status.at("title").get<std::string>(), tray.text);
        EXPECT_EQ(status.at("label").get<std::string>(), tray.label);
        EXPECT_EQ(status.at("kerahat").is_null(), tray.state != StatusLine::State::kerahat);
    };
    expectSame();
    EXPECT_EQ(model->statusLine().state, StatusLine::State::kerahat);
    EXPECT_TRUE(model->statusLine().text.starts_with("İftar"));

    model->set(Settings::ramadanMode, false);
    model->set(Settings::kerahatMinutes, 40);
    model->set(Settings::kerahatMenuDot, false);
    model->set(Settings::trayStyle, TrayStyle::nameAndTime);
    expectSame();
    EXPECT_EQ(model->statusLine().state, StatusLine::State::normal);
    EXPECT_TRUE(model->statusLine().text.starts_with("Akşam "));
}

// A suspend looks like a wall clock that ran ahead of the monotonic one: on the next tick the model
// tells of the time that entered meanwhile, once, and the wake signal does not tell it again.
TEST(AppModelSettings, ATimeThatEnteredWhileAsleepIsToldOnce)
{
    const Location fatih = Location::istanbul();
    const DayTimes day = PrayerCalculator::times({2026, 11, 10}, fatih, CalculationMethod::diyanet);
    Harness harness(day[Prayer::ogle] - 8 * 60);
    auto backend = std::make_shared<SilentBackend>();
    NotificationScheduler scheduler(backend, harness.clock);
    SystemEvents events;
    const auto model = std::make_unique<AppModel>(
        AppModel::Services{harness.clock, harness.repository, &scheduler, &events}, ModelRun::live, ModelVoice::audible);
    ASSERT_TRUE(reloadAndWait(*model));
    model->tick();
    EXPECT_TRUE(backend->shown.empty());

    harness.clock->jump(day[Prayer::ogle] + 67 * 60);
    model->tick();
    ASSERT_EQ(backend->shown.size(), 1u);
    EXPECT_EQ(backend->shown[0].title, "Öğle vakti girdi");
    EXPECT_EQ(backend->shown[0].body, "Bilgisayar uykudayken, " + QString::fromStdString(OrvelFormat::timeWithLocative(day[Prayer::ogle], fatih.timeZone()))
                                          + " · İstanbul, Fatih");
    emit events.wokeFromSleep();
    model->tick();
    // Time passing by itself is no sleep.
    harness.clock->advance(3 * 3600);
    model->tick();
    EXPECT_EQ(backend->shown.size(), 1u);
}

// The entry sound pauses the desktop's media players, and they go on once "Sesi durdur" stops it;
// with the setting off they are left alone.
TEST(AppModelSettings, TheEntrySoundPausesMediaAndResumesIt)
{
    struct CountingPlayers : MediaPlayers {
        int pauses = 0;
        int resumes = 0;
        void pausePlaying() override { ++pauses; }
        void resumePaused() override { ++resumes; }
    } players;
    const DayTimes day = PrayerCalculator::times({2026, 11, 10}, Location::istanbul(), CalculationMethod::diyanet);
    Harness harness(day[Prayer::ogle] - 30);
    const auto model = std::make_unique<AppModel>(
        AppModel::Services{harness.clock, harness.repository, &harness.scheduler, nullptr, &players}, ModelRun::still,
        ModelVoice::audible);
    model->set(Settings::adhanSound, AdhanSound::chime);
    ASSERT_TRUE(reloadAndWait(*model));
    harness.clock->advance(35);
    model->tick();
    ASSERT_TRUE(model->player().isPlaying());
    EXPECT_EQ(players.pauses, 1);
    // "Sesi durdur" on the entry notification stops it.
    emit harness.scheduler.stopSoundRequested();
    EXPECT_FALSE(model->player().isPlaying());
    EXPECT_EQ(players.resumes, 1);

    model->set(Settings::pauseMedia, false);
    harness.clock->set(day[Prayer::ikindi] + 5);
    model->tick();
    EXPECT_EQ(players.pauses, 1);
    model->player().stop();
}

using StatusImage::Style;

const QString kerahatSuffix = QStringLiteral(", kerahat vakti");

// A model with the day loaded, moved by hand to the moments around a prayer's entry.
class LoadedDay : public ::testing::Test {
protected:
    explicit LoadedDay(Instant start = at(2026, 6, 10, 4, 0))
        : harness(start)
        , model(harness.model())
    {
        EXPECT_TRUE(reloadAndWait(*model));
    }

    void set(Prayer prayer, double secondsAfter)
    {
        harness.clock->set((*model->today())[prayer] + secondsAfter);
        model->tick();
    }
    int starts() const
    {
        return static_cast<int>(std::count_if(playing.begin(), playing.end(),
                                              [](const QList<QVariant> &arguments) { return arguments.at(0).toBool(); }));
    }
    StatusImage::Image image(TrayStyle style = TrayStyle::nameAndRemaining, bool forceDot = false) const
    {
        return model->trayImage(style, forceDot);
    }
    int width(TrayStyle style = TrayStyle::nameAndRemaining) const { return image(style).image.width(); }
    // Titles are compared through the width of the image drawn for them.
    static int widthOf(const std::optional<QString> &text, Style style = Style::normal, bool dot = false)
    {
        return StatusImage::make(QStringLiteral("moon"), text, style, dot).image.width();
    }

    Harness harness;
    std::unique_ptr<AppModel> model;
    QSignalSpy playing{&model->player(), &AdhanPlayer::isPlayingChanged};
};

class EntrySound : public LoadedDay {
protected:
    EntrySound() { model->set(Settings::adhanSound, AdhanSound::chime); }
};

TEST_F(EntrySound, PlaysOncePerEntryAndNeverOnAFrozenClock)
{
    set(Prayer::ogle, 5);
    EXPECT_EQ(starts(), 1);
    EXPECT_TRUE(QFile::exists(harness.folder.filePath("Sounds/chime.wav")));
    for (const double later : {30, 59, 75})
        set(Prayer::ogle, later);
    EXPECT_EQ(starts(), 1);
    set(Prayer::ikindi, 0);
    EXPECT_EQ(starts(), 2);

    const auto frozen = harness.silentModel((*model->today())[Prayer::aksam] + 5);
    QSignalSpy frozenPlaying(&frozen->player(), &AdhanPlayer::isPlayingChanged);
    frozen->set(Settings::adhanSound, AdhanSound::chime);
    ASSERT_TRUE(reloadAndWait(*frozen));
    frozen->tick();
    EXPECT_EQ(frozenPlaying.count(), 0);
}

TEST_F(EntrySound, NeverForGunesNorAPrayerLeftOutNorInQuietHoursNorWithTheSystemSound)
{
    model->set(Settings::notifiedPrayers, {Prayer::gunes, Prayer::imsak});
    set(Prayer::gunes, 5);
    set(Prayer::ogle, 5);
    EXPECT_EQ(starts(), 0);
    // Switched on within the same minute: the entry was not yet handled, so it sounds now.
    model->set(Settings::notifiedPrayers, {Prayer::ogle, Prayer::ikindi, Prayer::aksam, Prayer::yatsi});
    set(Prayer::ogle, 20);
    EXPECT_EQ(starts(), 1);

    // Quiet hours swallow the whole entry, even when switched off within its minute.
    model->set(Settings::quietHours, {true, 0, 24 * 60 - 1});
    set(Prayer::ikindi, 5);
    model->set(Settings::quietHours, {false, 0, 24 * 60 - 1});
    set(Prayer::ikindi, 40);
    EXPECT_EQ(starts(), 1);
    set(Prayer::aksam, 5);
    EXPECT_EQ(starts(), 2);

    // The system sound belongs to the notification; the app's player stays out of it.
    model->set(Settings::adhanSound, AdhanSound::system);
    set(Prayer::yatsi, 5);
    EXPECT_EQ(starts(), 2);
}

using TrayTitle = LoadedDay;

TEST_F(TrayTitle, TheEntryMinuteShowsThePillExceptAtGunes)
{
    const auto unloaded = harness.model();
    EXPECT_TRUE(unloaded->trayImage(TrayStyle::nameAndRemaining, false).isTemplate);
    EXPECT_EQ(unloaded->trayImage(TrayStyle::nameAndRemaining, false).image.width(), widthOf(std::nullopt));
    EXPECT_EQ(unloaded->accessibilityLabel(), QStringLiteral("Orvel"));

    model->set(Settings::kerahatMenuDot, false);
    set(Prayer::ogle, 10);
    for (const TrayStyle style : TrayStyle::all) {
        EXPECT_FALSE(image(style).isTemplate);
        EXPECT_EQ(width(style), widthOf(QStringLiteral("Öğle vakti"), Style::adhan));
    }
    set(Prayer::ogle, 60);
    EXPECT_TRUE(image(TrayStyle::iconOnly).isTemplate);

    set(Prayer::gunes, 10);
    EXPECT_TRUE(image(TrayStyle::iconOnly).isTemplate);
    EXPECT_EQ(width(TrayStyle::iconOnly), widthOf(std::nullopt));
}

TEST_F(TrayTitle, KerahatDotFollowsTheSettingButTheLabelAlwaysSaysIt)
{
    set(Prayer::gunes, 10 * 60); // inside the sunrise interval
    const QString title = "Öğle " + QString::fromStdString(OrvelFormat::compact(model->status()->minutesRemaining));
    EXPECT_FALSE(image().isTemplate);
    EXPECT_EQ(width(), widthOf(title, Style::normal, true));
    EXPECT_TRUE(model->accessibilityLabel().endsWith(kerahatSuffix));

    model->set(Settings::kerahatMenuDot, false);
    EXPECT_TRUE(image().isTemplate);
    EXPECT_EQ(width(), widthOf(title));
    EXPECT_TRUE(model->accessibilityLabel().endsWith(kerahatSuffix));
    EXPECT_EQ(image(TrayStyle::nameAndRemaining, true).image.width(), widthOf(title, Style::normal, true));

    model->set(Settings::kerahatMenuDot, true);
    model->set(Settings::showKerahat, false);
    EXPECT_TRUE(image().isTemplate);
    EXPECT_FALSE(model->accessibilityLabel().endsWith(kerahatSuffix));

    model->set(Settings::showKerahat, true);
    set(Prayer::ogle, 30 * 60); // between istiva and sunset
    EXPECT_TRUE(image().isTemplate);
    EXPECT_FALSE(model->accessibilityLabel().endsWith(kerahatSuffix));
}

TEST_F(TrayTitle, TimeLeftBeforeAksam)
{
    set(Prayer::aksam, -75 * 60);
    const QString clock = QString::fromStdString(OrvelFormat::time((*model->today())[Prayer::aksam], TimeZone::current()));
    EXPECT_EQ(width(), widthOf(QStringLiteral("Akşam 1:15")));
    EXPECT_EQ(width(TrayStyle::remaining), widthOf(QStringLiteral("1:15")));
    EXPECT_EQ(width(TrayStyle::nameAndTime), widthOf("Akşam " + clock));
    EXPECT_EQ(width(TrayStyle::iconOnly), widthOf(std::nullopt));
    EXPECT_EQ(model->accessibilityLabel(), QStringLiteral("Akşam ezanına 1 saat 15 dakika kaldı"));
}

class RamadanTrayTitle : public LoadedDay {
protected:
    RamadanTrayTitle()
        : LoadedDay(at(2026, 3, 10, 4, 0))
    {
    }
};

TEST_F(RamadanTrayTitle, IftarInsteadOfAksamUnlessSwitchedOff)
{
    ASSERT_NE(widthOf(QStringLiteral("İftar 1:15")), widthOf(QStringLiteral("Akşam 1:15")));
    set(Prayer::aksam, -75 * 60);
    EXPECT_EQ(width(), widthOf(QStringLiteral("İftar 1:15")));
    EXPECT_EQ(model->accessibilityLabel(), QStringLiteral("İftara 1 saat 15 dakika kaldı"));
    model->set(Settings::ramadanMode, false);
    EXPECT_EQ(width(), widthOf(QStringLiteral("Akşam 1:15")));
    EXPECT_FALSE(model->ramadanDay());
}

} // namespace
} // namespace orvel::test
