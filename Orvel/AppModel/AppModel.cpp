#include "AppModel.h"

#include "AdhanPlayer.h"
#include "Calendars.h"
#include "MediaPlayers.h"
#include "NotificationScheduler.h"
#include "OrvelFormat.h"
#include "Ramadan.h"
#include "SoundLibrary.h"
#include "StatusText.h"
#include "SystemEvents.h"

#include <QFutureWatcher>
#include <QTimer>
#include <QtConcurrent/QtConcurrentRun>

#include <cmath>
#include <limits>

namespace orvel {

namespace {


constexpr int tickIntervalMs = 1000;
constexpr double minuteSeconds = 60;
const QString statusSymbol = QStringLiteral("moon");

QString qt(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

struct AppModel::Private {
    std::shared_ptr<const Clock> clock;
    NotificationScheduler *scheduler = nullptr;
    QTimer *timer = nullptr;
    // Each load carries the generation it started in; an answer from an older one is dropped.
    uint64_t loadGeneration = 0;
    Instant lastOnlineAttempt{std::numeric_limits<double>::lowest()};
    std::optional<QString> lastPlayedKey;
    // The per-minute checks (entry sound, day roll-over) only need to run again once the minute,
    // the loaded days or a setting they read has changed; the idle second ticks skip them.
    bool checksPending = true;
    // The scheduler's backend plays the desktop's message sound through our player.
    bool messageSoundLent = false;
    // The clocks at the last tick, to tell a suspend from time passing.
    Instant lastWall;
    double lastMonotonic = 0;
    QString lastMissed;
    MediaPlayers *media = nullptr;
};

AppModel::AppModel(Services services, ModelRun run, ModelVoice voice, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
    , voice_(voice)
{
    Q_ASSERT(services.clock);
    d->clock = std::move(services.clock);
    d->scheduler = voice == ModelVoice::audible ? services.scheduler : nullptr;
    repository_ = services.repository
        ? std::move(services.repository)
        : std::make_shared<PrayerRepository>(PrayerRepository::defaultCacheDirectory(), AladhanClient());
    player_ = std::make_unique<AdhanPlayer>();
    now_ = d->clock->now().floorToMinute();

    for (const SettingRow *row : SettingRow::all())
        settings_.push_back(row->load());
    d->media = services.mediaPlayers ? services.mediaPlayers : new MediaPlayers(this);
    // What the entry sound paused goes on when it ends, however it ends.
    connect(player_.get(), &AdhanPlayer::isPlayingChanged, this, [this](bool playing) {
        if (playing)
            return;
        d->media->resumePaused();
        // The notification's "Sesi durdur" goes with the sound (a model without services has
        // shown no notification).
        if (d->scheduler)
            d->scheduler->soundEnded();
    });
    d->lastWall = d->clock->now();
    d->lastMonotonic = d->clock->monotonicSeconds();

    if (run == ModelRun::still)
        return;
    startTickTimer();
    observeSystemEvents(services.systemEvents);
    reload();
}

void AppModel::adoptStoredSettings()
{
    SettingsStore::store().sync();
    // Only what differs is taken on, so an unchanged setting reschedules nothing.
    for (const SettingRow *row : SettingRow::all()) {
        std::any stored = row->load();
        if (row->equal(settings_[row->index()], stored))
            continue;
        settings_[row->index()] = std::move(stored);
        settingSet(*row);
    }
}

AppModel::~AppModel()
{
    if (d->messageSoundLent)
        d->scheduler->setMessageSound({});
}

template <typename T>
bool AppModel::assign(T &field, const T &value, void (AppModel::*signal)())
{
    if (field == value)
        return false;
    field = value;
    emit(this->*signal)();
    emit changed();
    return true;
}

// Settings.

void AppModel::settingSet(const SettingRow &row)
{
    emit settingChanged(QString::fromLatin1(row.name()));
    emit changed();
    const Effect effect = row.effect();
    if (contains(effect, Effect::volume))
        player_->setVolume(setting(Settings::soundVolume));
    if (contains(effect, Effect::recheck))
        d->checksPending = true;
    if (contains(effect, Effect::reload)) {
        reload();
        return;
    }
    if (contains(effect, Effect::reschedule))
        rescheduleNotifications();
}

void AppModel::toggleNotification(Prayer prayer)
{
    std::set<Prayer::Value> prayers = setting(Settings::notifiedPrayers);
    if (!prayers.erase(prayer))
        prayers.insert(prayer);
    set(Settings::notifiedPrayers, prayers);
}

// Loading and the clock.

NotificationScheduler *AppModel::notifications() const
{
    return d->scheduler;
}

void AppModel::startTickTimer()
{
    d->timer = new QTimer(this);
    d->timer->setInterval(tickIntervalMs);
    // On the whole second, so that a new minute reaches the panel together with the notice that
    // enters on it rather than up to a second later; one wake-up a second either way.
    d->timer->setTimerType(Qt::PreciseTimer);
    connect(d->timer, &QTimer::timeout, this, &AppModel::tick);
    const double fraction = d->clock->now().seconds - std::floor(d->clock->now().seconds);
    const int toWholeSecond = static_cast<int>(std::ceil((1.0 - fraction) * 1000.0)) % tickIntervalMs;
    QTimer::singleShot(toWholeSecond, Qt::PreciseTimer, this, [this] {
        tick();
        d->timer->start();
    });
}

void AppModel::observeSystemEvents(SystemEvents *events)
{
    if (!events)
        return;
    SystemEvents *source = events;
    connect(source, &SystemEvents::wokeFromSleep, this, [this] {
        noticeSleep();
        reload();
    });
    connect(source, &SystemEvents::clockChanged, this, &AppModel::reload);
    connect(source, &SystemEvents::timeZoneChanged, this, [this] {
        // ICU keeps the zone it found at start-up until told to look again.
        TimeZone::redetectCurrent();
        reload();
    });
}

void AppModel::reload()
{
    const uint64_t generation = ++d->loadGeneration;
    const Location location = setting(Settings::location);
    const CalculationMethod method = setting(Settings::method);
    const TimesOptions options = setting(Settings::timesOptions);
    const DayKey key = DayKey::from(d->clock->now(), zone());
    setLoading(true);
    d->lastOnlineAttempt = d->clock->now();

    auto *watcher = new QFutureWatcher<PrayerRepository::Answer>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, generation, key, location, method, options] {
        watcher->deleteLater();
        if (generation != d->loadGeneration)
            return;
        applyLoad(watcher->result());
        prefetchAhead(key, location, method, options);
        emit loadFinished();
    });
    watcher->setFuture(QtConcurrent::run([repository = repository_, key, location, method, options] {
        return repository->days({key, key.adding(1)}, location, method, options);
    }));
}

void AppModel::applyLoad(const PrayerRepository::Answer &answer)
{
    if (!answer.days.empty()) {
        assign(today_, std::optional<DayTimes>(answer.days[0]), &AppModel::todayChanged);
        const std::optional<DayTimes> tomorrow =
            answer.days.size() > 1 ? std::optional<DayTimes>(answer.days[1]) : std::nullopt;
        assign(tomorrow_, tomorrow, &AppModel::tomorrowChanged);
        assign(source_, answer.source, &AppModel::sourceChanged);
    }
    setLoading(false);
    d->checksPending = true;
    tick();
    rescheduleNotifications();
}

void AppModel::prefetchAhead(DayKey key, const Location &location, CalculationMethod method,
                             const TimesOptions &options)
{
    if (key.day < prefetchFromDay)
        return;
    const MonthKey month = key.adding(prefetchLookAheadDays).monthKey();
    // The answer only fills the cache; nothing waits for it.
    static_cast<void>(QtConcurrent::run([repository = repository_, month, location, method, options] {
        repository->prefetch(month, location, method, options);
    }));
}

void AppModel::setLoading(bool loading)
{
    assign(isLoading_, loading, &AppModel::isLoadingChanged);
}

void AppModel::tick()
{
    noticeSleep();
    const Instant minute = d->clock->now().floorToMinute();
    const bool minuteChanged = assign(now_, minute, &AppModel::nowChanged);
    if (isLoading_ || !today_)
        return;
    if (minuteChanged || d->checksPending) {
        d->checksPending = false;
        playAdhanIfNeeded();
        if (DayKey::from(minute, zone()) != today_->day) {
            reload();
            return;
        }
    }
    if (source_ == TimesSource::offline && d->clock->now() - d->lastOnlineAttempt > offlineRetrySeconds)
        reload();
}

void AppModel::noticeSleep()
{
    constexpr double sleepSeconds = 60;
    const Instant wall = d->clock->now();
    const double monotonic = d->clock->monotonicSeconds();
    const double ahead = (wall - d->lastWall) - (monotonic - d->lastMonotonic);
    const Instant since = d->lastWall;
    d->lastWall = wall;
    d->lastMonotonic = monotonic;
    if (ahead > sleepSeconds)
        announceMissed(since);
}

void AppModel::announceMissed(Instant since)
{
    if (!d->scheduler || !today_ || !tomorrow_)
        return;
    const std::optional<NotificationRequest> missed =
        NotificationScheduler::missedWhileAsleep(notificationPlan(), since, d->clock->now());
    // The wake signal and the clock's jump tell of the same sleep.
    if (!missed || missed->identifier == d->lastMissed)
        return;
    d->lastMissed = missed->identifier;
    d->scheduler->announce(*missed);
}

NotificationPlan AppModel::notificationPlan() const
{
    NotificationPlan plan;
    plan.days = {*today_, *tomorrow_};
    plan.location = setting(Settings::location);
    plan.enabled = setting(Settings::notifiedPrayers);
    plan.reminderMinutes = setting(Settings::reminderMinutes);
    if (setting(Settings::showKerahat) && setting(Settings::kerahatNotify)) {
        for (const DayTimes &day : plan.days) {
            const auto intervals
                = Kerahat::intervals(day, setting(Settings::kerahatMinutes), Kerahat::defaultIstivaMinutes);
            plan.kerahat.insert(plan.kerahat.end(), intervals.begin(), intervals.end());
        }
    }
    plan.systemSound = setting(Settings::adhanSound) == AdhanSound::system;
    plan.ownSound = setting(Settings::adhanSound).isPlayedByApp();
    plan.quietHours = setting(Settings::quietHours);
    plan.ramadanMode = setting(Settings::ramadanMode);
    plan.fridayMinutes = setting(Settings::fridayMinutes);
    plan.religiousDays = setting(Settings::religiousDayNotify);
    return plan;
}

void AppModel::rescheduleNotifications()
{
    if (!d->scheduler || !today_ || !tomorrow_)
        return;
    const NotificationPlan plan = notificationPlan();
    if (!d->messageSoundLent) {
        d->scheduler->setMessageSound([this] { playMessageSound(); });
        connect(d->scheduler, &NotificationScheduler::stopSoundRequested, player_.get(), &AdhanPlayer::stop);
        connect(d->scheduler, &NotificationScheduler::openPanelRequested, this, &AppModel::panelRequested);
        d->messageSoundLent = true;
    }
    d->scheduler->reschedule(plan);
}

void AppModel::playMessageSound()
{
    if (const auto file = SoundLibrary::messagePath())
        player_->play(*file, 1.0);
}

void AppModel::playAdhanIfNeeded()
{
    if (voice_ == ModelVoice::silent || !today_)
        return;
    const std::optional<PrayerStatus> s = status();
    if (!s || !s->current || *s->current == Prayer::gunes || !s->currentTime)
        return;
    if (!(now_ - *s->currentTime < minuteSeconds))
        return;
    if (!setting(Settings::notifiedPrayers).contains(*s->current))
        return;
    const QString key = QString::fromStdString(today_->day.description()) + u'-' + qt(s->current->id());
    if (d->lastPlayedKey == key)
        return;
    // Counted as handled before the quiet-hours test, so leaving quiet hours later in the same
    // minute does not sound it after all.
    d->lastPlayedKey = key;
    if (setting(Settings::quietHours).contains(d->clock->now(), TimeZone::current()))
        return;
    const std::optional<QString> path = soundPath();
    if (!path)
        return;
    player_->play(*path, setting(Settings::soundVolume));
    // After play(), whose stop of an earlier sound would resume what is paused here.
    if (setting(Settings::pauseMedia) && player_->isPlaying())
        d->media->pausePlaying();
}

std::optional<QString> AppModel::soundPath() const
{
    switch (setting(Settings::adhanSound)) {
    case AdhanSound::chime:
        return SoundLibrary::chimePath();
    case AdhanSound::custom:
        return SoundLibrary::customPath();
    case AdhanSound::system:
    case AdhanSound::none:
        return std::nullopt;
    }
    return std::nullopt;
}

void AppModel::previewSound()
{
    if (player_->isPlaying()) {
        player_->stop();
        return;
    }
    if (const std::optional<QString> path = soundPath())
        player_->play(*path, setting(Settings::soundVolume));
}

QFuture<PrayerRepository::Answer> AppModel::days(const std::vector<DayKey> &keys) const
{
    return QtConcurrent::run([repository = repository_, keys, location = setting(Settings::location),
                              method = setting(Settings::method), options = setting(Settings::timesOptions)] {
        return repository->days(keys, location, method, options);
    });
}

// Derived values.

TimeZone AppModel::zone() const
{
    return setting(Settings::location).timeZone();
}

DayKey AppModel::todayKey() const
{
    return today_ ? today_->day : DayKey::from(now_, zone());
}

std::optional<PrayerStatus> AppModel::status() const
{
    if (!today_)
        return std::nullopt;
    return PrayerSchedule::status(now_, *today_, tomorrow_, zone());
}

QString AppModel::dateLine() const
{
    const QString date = QString::fromStdString(OrvelFormat::longDate(now_, zone()));
    if (!today_)
        return date;
    return date + QStringLiteral(" · ") + QString::fromStdString(today_->hijriOrApproximate().formatted());
}

std::vector<KerahatInterval> AppModel::kerahatIntervals() const
{
    return StatusText::kerahatIntervals(statusSettings(), today_);
}

StatusSettings AppModel::statusSettings() const
{
    return {setting(Settings::trayStyle), setting(Settings::ramadanMode), setting(Settings::showKerahat),
            setting(Settings::kerahatMinutes), setting(Settings::kerahatMenuDot)};
}

bool AppModel::isRamadanToday() const
{
    return StatusText::isRamadanToday(setting(Settings::ramadanMode), today_);
}

bool AppModel::nextIsRamadan() const
{
    return StatusText::nextIsRamadan(setting(Settings::ramadanMode), status(), today_, tomorrow_);
}

std::optional<int64_t> AppModel::ramadanDay() const
{
    if (!setting(Settings::ramadanMode) || !today_)
        return std::nullopt;
    return Ramadan::dayNumber(*today_);
}

std::vector<ReligiousDay> AppModel::religiousDays() const
{
    if (!today_ || !tomorrow_)
        return {};
    return ReligiousDays::of(today_->day, today_->hijriOrApproximate(), tomorrow_->hijriOrApproximate());
}

StatusLine AppModel::statusLine(TrayStyle style) const
{
    StatusSettings settings = statusSettings();
    settings.style = style;
    return StatusText::line(settings, now_, today_, tomorrow_, zone());
}

StatusItemContent AppModel::statusItemContent() const
{
    const std::optional<PrayerStatus> now = status();
    return {statusLine(), setting(Settings::trayStyle), setting(Settings::iconRemaining),
            now ? std::optional(now->minutesRemaining) : std::nullopt};
}

PublishedStatus AppModel::publishedStatus() const
{
    const TrayStyle chosen = setting(Settings::trayStyle);
    const TrayStyle style = chosen == TrayStyle::iconOnly ? TrayStyle(TrayStyle::nameAndRemaining) : chosen;
    const StatusLine line = statusLine(style);
    PublishedStatus published;
    published.title = qt(line.text);
    published.label = qt(line.label);
    published.state = QString::fromUtf8(StatusText::stateName(line.state));
    if (const std::optional<PrayerStatus> now = status()) {
        published.nextName = QString::fromUtf8(now->next.displayName(nextIsRamadan()));
        published.nextMoment = QString::fromStdString(Calendars::iso8601(now->nextTime, zone()));
    }
    published.playing = player_->isPlaying();
    return published;
}

StatusImage::Image AppModel::trayImage(TrayStyle style, bool forceKerahatDot, qreal devicePixelRatio) const
{
    const StatusLine line = statusLine(style);
    const std::optional<QString> text = line.text.empty() ? std::nullopt : std::optional(qt(line.text));
    if (line.state == StatusLine::State::entry)
        return StatusImage::make(statusSymbol, text, StatusImage::Style::adhan, false, devicePixelRatio);
    const bool dot = forceKerahatDot || line.state == StatusLine::State::kerahat;
    return StatusImage::make(statusSymbol, text, StatusImage::Style::normal, dot, devicePixelRatio);
}

QString AppModel::accessibilityLabel() const
{
    return QString::fromStdString(statusLine().label);
}

} // namespace orvel
