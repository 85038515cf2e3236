#include "AppModel.h"

#include "AdhanPlayer.h"
#include "Defaults.h"
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

using Key = Defaults::Key;

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

AppModel::AppModel(std::optional<Instant> fixedNow, bool startServices, Services services, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
    , fixedNow_(fixedNow)
{
    d->clock = services.clock ? std::move(services.clock) : std::make_shared<SystemClock>();
    d->scheduler = services.scheduler;
    repository_ = services.repository
        ? std::move(services.repository)
        : std::make_shared<PrayerRepository>(PrayerRepository::defaultCacheDirectory(), AladhanClient());
    player_ = std::make_unique<AdhanPlayer>();
    now_ = currentTime().floorToMinute();

    const Defaults::Settings settings = Defaults::load();
    location_ = settings.location;
    method_ = settings.method;
    menuBarStyle_ = settings.menuBarStyle;
    notifiedPrayers_ = settings.notifiedPrayers;
    reminderMinutes_ = settings.reminderMinutes;
    showKerahat_ = settings.showKerahat;
    kerahatMenuDot_ = settings.kerahatMenuDot;
    kerahatNotify_ = settings.kerahatNotify;
    kerahatMinutes_ = settings.kerahatMinutes;
    ramadanMode_ = settings.ramadanMode;
    adhanSound_ = settings.adhanSound;
    customSoundName_ = settings.customSoundName;
    soundVolume_ = settings.soundVolume;
    quietHours_ = settings.quietHours;
    iconRemaining_ = settings.iconRemaining;
    timesOptions_ = settings.times;
    fridayMinutes_ = settings.fridayMinutes;
    pauseMedia_ = settings.pauseMedia;
    d->media = services.mediaPlayers ? services.mediaPlayers
                                     : (startServices ? MediaPlayers::createForPlatform(this) : new MediaPlayers(this));
    // What the entry sound paused goes on when it ends, however it ends.
    connect(player_.get(), &AdhanPlayer::isPlayingChanged, this, [this, startServices](bool playing) {
        if (playing)
            return;
        d->media->resumePaused();
        // The notification's "Sesi durdur" goes with the sound (a model without services has
        // shown no notification).
        if (startServices || d->scheduler)
            scheduler().soundEnded();
    });
    d->lastWall = d->clock->now();
    d->lastMonotonic = d->clock->monotonicSeconds();

    if (!startServices)
        return;
    startTickTimer();
    observeSystemEvents(services.systemEvents);
    reload();
}

void AppModel::adoptStoredSettings()
{
    Defaults::store().sync();
    const Defaults::Settings stored = Defaults::load();
    // Only what differs is set, so an unchanged setting reschedules nothing.
    const auto adopt = [this](const auto &current, const auto &value, auto setter) {
        if (!(current == value))
            (this->*setter)(value);
    };
    adopt(location_, stored.location, &AppModel::setLocation);
    adopt(method_, stored.method, &AppModel::setMethod);
    adopt(menuBarStyle_, stored.menuBarStyle, &AppModel::setMenuBarStyle);
    adopt(notifiedPrayers_, stored.notifiedPrayers, &AppModel::setNotifiedPrayers);
    adopt(reminderMinutes_, stored.reminderMinutes, &AppModel::setReminderMinutes);
    adopt(showKerahat_, stored.showKerahat, &AppModel::setShowKerahat);
    adopt(kerahatMenuDot_, stored.kerahatMenuDot, &AppModel::setKerahatMenuDot);
    adopt(kerahatNotify_, stored.kerahatNotify, &AppModel::setKerahatNotify);
    adopt(kerahatMinutes_, stored.kerahatMinutes, &AppModel::setKerahatMinutes);
    adopt(ramadanMode_, stored.ramadanMode, &AppModel::setRamadanMode);
    adopt(adhanSound_, stored.adhanSound, &AppModel::setAdhanSound);
    adopt(customSoundName_, stored.customSoundName, &AppModel::setCustomSoundName);
    adopt(soundVolume_, stored.soundVolume, &AppModel::setSoundVolume);
    adopt(quietHours_, stored.quietHours, &AppModel::setQuietHours);
    adopt(iconRemaining_, stored.iconRemaining, &AppModel::setIconRemaining);
    adopt(timesOptions_, stored.times, &AppModel::setTimesOptions);
    adopt(fridayMinutes_, stored.fridayMinutes, &AppModel::setFridayMinutes);
    adopt(pauseMedia_, stored.pauseMedia, &AppModel::setPauseMedia);
}

AppModel::~AppModel()
{
    if (d->messageSoundLent)
        scheduler().setMessageSound({});
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

void AppModel::setLocation(const Location &location)
{
    if (location == location_)
        return;
    Defaults::encode(Key::location, location);
    assign(location_, location, &AppModel::locationChanged);
    reload();
}

void AppModel::setMethod(CalculationMethod method)
{
    if (method == method_)
        return;
    Defaults::write(Key::method, qt(method.rawValue()));
    assign(method_, method, &AppModel::methodChanged);
    reload();
}

void AppModel::setMenuBarStyle(MenuBarStyle style)
{
    Defaults::write(Key::menuBarStyle, qt(style.rawValue()));
    assign(menuBarStyle_, style, &AppModel::menuBarStyleChanged);
}

void AppModel::setNotifiedPrayers(const std::set<Prayer::Value> &prayers)
{
    Defaults::writeNotified(prayers);
    assign(notifiedPrayers_, prayers, &AppModel::notifiedPrayersChanged);
    d->checksPending = true;
    rescheduleNotifications();
}

void AppModel::setReminderMinutes(int64_t minutes)
{
    Defaults::write(Key::reminder, qint64(minutes));
    assign(reminderMinutes_, minutes, &AppModel::reminderMinutesChanged);
    rescheduleNotifications();
}

void AppModel::setShowKerahat(bool show)
{
    Defaults::write(Key::kerahatShow, show);
    assign(showKerahat_, show, &AppModel::showKerahatChanged);
    rescheduleNotifications();
}

void AppModel::setKerahatMenuDot(bool dot)
{
    Defaults::write(Key::kerahatDot, dot);
    assign(kerahatMenuDot_, dot, &AppModel::kerahatMenuDotChanged);
}

void AppModel::setKerahatNotify(bool notify)
{
    Defaults::write(Key::kerahatNotify, notify);
    assign(kerahatNotify_, notify, &AppModel::kerahatNotifyChanged);
    rescheduleNotifications();
}

void AppModel::setKerahatMinutes(int64_t minutes)
{
    Defaults::write(Key::kerahatMinutes, qint64(minutes));
    assign(kerahatMinutes_, minutes, &AppModel::kerahatMinutesChanged);
    rescheduleNotifications();
}

void AppModel::setRamadanMode(bool on)
{
    Defaults::write(Key::ramadanMode, on);
    assign(ramadanMode_, on, &AppModel::ramadanModeChanged);
    rescheduleNotifications();
}

void AppModel::setAdhanSound(AdhanSound sound)
{
    Defaults::write(Key::adhanSound, qt(sound.rawValue()));
    assign(adhanSound_, sound, &AppModel::adhanSoundChanged);
    d->checksPending = true;
    rescheduleNotifications();
}

void AppModel::setCustomSoundName(const std::optional<QString> &name)
{
    // An empty name is how "none" is stored, so it means none here too.
    const std::optional<QString> normalized = name && !name->isEmpty() ? name : std::nullopt;
    Defaults::writeCustomSoundName(normalized);
    assign(customSoundName_, normalized, &AppModel::customSoundNameChanged);
}

void AppModel::setSoundVolume(double volume)
{
    Defaults::write(Key::soundVolume, volume);
    assign(soundVolume_, volume, &AppModel::soundVolumeChanged);
    player_->setVolume(volume);
}

void AppModel::setQuietHours(const QuietHours &hours)
{
    Defaults::encode(Key::quietHours, hours);
    assign(quietHours_, hours, &AppModel::quietHoursChanged);
    d->checksPending = true;
    rescheduleNotifications();
}

void AppModel::setIconRemaining(std::optional<bool> shown)
{
    Defaults::writeIconRemaining(shown);
    assign(iconRemaining_, shown, &AppModel::iconRemainingChanged);
}

void AppModel::setTimesOptions(const TimesOptions &options)
{
    if (options == timesOptions_ || !options.isValid())
        return;
    Defaults::encode(Key::times, options);
    assign(timesOptions_, options, &AppModel::timesOptionsChanged);
    reload();
}

void AppModel::setFridayMinutes(int64_t minutes)
{
    Defaults::write(Key::fridayReminder, qint64(minutes));
    assign(fridayMinutes_, minutes, &AppModel::fridayMinutesChanged);
    rescheduleNotifications();
}

void AppModel::setPauseMedia(bool pause)
{
    Defaults::write(Key::pauseMedia, pause);
    assign(pauseMedia_, pause, &AppModel::pauseMediaChanged);
}

void AppModel::toggleNotification(Prayer prayer)
{
    std::set<Prayer::Value> prayers = notifiedPrayers_;
    if (!prayers.erase(prayer))
        prayers.insert(prayer);
    setNotifiedPrayers(prayers);
}

// Loading and the clock.

Instant AppModel::currentTime() const
{
    return fixedNow_ ? *fixedNow_ : d->clock->now();
}

NotificationScheduler &AppModel::scheduler() const
{
    // The shared scheduler talks to the session bus, so it is only made when first needed.
    return d->scheduler ? *d->scheduler : NotificationScheduler::shared();
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
    SystemEvents *source = events ? events : SystemEvents::createForPlatform(this);
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
    const Location location = location_;
    const CalculationMethod method = method_;
    const TimesOptions options = timesOptions_;
    const DayKey key = DayKey::from(currentTime(), zone());
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
    const Instant minute = currentTime().floorToMinute();
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
    if (fixedNow_ || !today_ || !tomorrow_)
        return;
    const std::optional<NotificationRequest> missed =
        NotificationScheduler::missedWhileAsleep(notificationPlan(), since, d->clock->now());
    // The wake signal and the clock's jump tell of the same sleep.
    if (!missed || missed->identifier == d->lastMissed)
        return;
    d->lastMissed = missed->identifier;
    scheduler().announce(*missed);
}

NotificationPlan AppModel::notificationPlan() const
{
    NotificationPlan plan;
    plan.days = {*today_, *tomorrow_};
    plan.location = location_;
    plan.enabled = notifiedPrayers_;
    plan.reminderMinutes = reminderMinutes_;
    if (showKerahat_ && kerahatNotify_) {
        for (const DayTimes &day : plan.days) {
            const auto intervals = Kerahat::intervals(day, kerahatMinutes_, Kerahat::defaultIstivaMinutes);
            plan.kerahat.insert(plan.kerahat.end(), intervals.begin(), intervals.end());
        }
    }
    plan.systemSound = adhanSound_ == AdhanSound::system;
    plan.ownSound = adhanSound_ == AdhanSound::chime || adhanSound_ == AdhanSound::custom;
    plan.quietHours = quietHours_;
    plan.ramadanMode = ramadanMode_;
    plan.fridayMinutes = fridayMinutes_;
    return plan;
}

void AppModel::rescheduleNotifications()
{
    if (fixedNow_ || !today_ || !tomorrow_)
        return;
    const NotificationPlan plan = notificationPlan();
    if (!d->messageSoundLent) {
        scheduler().setMessageSound([this] { playMessageSound(); });
        connect(&scheduler(), &NotificationScheduler::stopSoundRequested, player_.get(), &AdhanPlayer::stop);
        connect(&scheduler(), &NotificationScheduler::openPanelRequested, this, &AppModel::panelRequested);
        d->messageSoundLent = true;
    }
    scheduler().reschedule(plan);
}

void AppModel::playMessageSound()
{
    if (const auto file = SoundLibrary::messagePath())
        player_->play(*file, 1.0);
}

void AppModel::playAdhanIfNeeded()
{
    if (fixedNow_ || !today_)
        return;
    const std::optional<PrayerStatus> s = status();
    if (!s || !s->current || *s->current == Prayer::gunes || !s->currentTime)
        return;
    if (!(now_ - *s->currentTime < minuteSeconds))
        return;
    if (!notifiedPrayers_.contains(*s->current))
        return;
    const QString key = QString::fromStdString(today_->day.description()) + u'-' + qt(s->current->rawValue());
    if (d->lastPlayedKey == key)
        return;
    // Counted as handled before the quiet-hours test, so leaving quiet hours later in the same
    // minute does not sound it after all.
    d->lastPlayedKey = key;
    if (quietHours_.contains(d->clock->now(), TimeZone::current()))
        return;
    const std::optional<QString> path = soundPath();
    if (!path)
        return;
    player_->play(*path, soundVolume_);
    // After play(), whose stop of an earlier sound would resume what is paused here.
    if (pauseMedia_ && player_->isPlaying())
        d->media->pausePlaying();
}

std::optional<QString> AppModel::soundPath() const
{
    switch (adhanSound_) {
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
        player_->play(*path, soundVolume_);
}

QFuture<PrayerRepository::Answer> AppModel::days(const std::vector<DayKey> &keys) const
{
    return QtConcurrent::run([repository = repository_, keys, location = location_, method = method_,
                              options = timesOptions_] {
        return repository->days(keys, location, method, options);
    });
}

// Derived values.

TimeZone AppModel::zone() const
{
    return location_.timeZone();
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
    return {menuBarStyle_, ramadanMode_, showKerahat_, kerahatMinutes_, kerahatMenuDot_};
}

bool AppModel::isRamadanToday() const
{
    return StatusText::isRamadanToday(ramadanMode_, today_);
}

bool AppModel::nextIsRamadan() const
{
    return StatusText::nextIsRamadan(ramadanMode_, status(), today_, tomorrow_);
}

std::optional<int64_t> AppModel::ramadanDay() const
{
    if (!ramadanMode_ || !today_)
        return std::nullopt;
    return Ramadan::dayNumber(*today_);
}

StatusLine AppModel::statusLine(MenuBarStyle style) const
{
    StatusSettings settings = statusSettings();
    settings.style = style;
    return StatusText::line(settings, now_, today_, tomorrow_, zone());
}

StatusImage::Image AppModel::menuBarImage(MenuBarStyle style, bool forceKerahatDot, qreal devicePixelRatio) const
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
