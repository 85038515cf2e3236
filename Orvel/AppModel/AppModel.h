#pragma once

#include "AdhanSound.h"
#include "CalculationMethod.h"
#include "Clock.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "Instant.h"
#include "Kerahat.h"
#include "Location.h"
#include "TrayStyle.h"
#include "NotificationScheduler.h"
#include "PrayerRepository.h"
#include "PrayerSchedule.h"
#include "QuietHours.h"
#include "ReligiousDays.h"
#include "Settings.h"
#include "StatusService.h"
#include "StatusText.h"
#include "StatusImage.h"
#include "TimeZone.h"
#include "TimesOptions.h"
#include "TimesSource.h"

#include <QFuture>
#include <QObject>
#include <QString>

#include <any>
#include <memory>
#include <optional>
#include <set>
#include <type_traits>
#include <vector>

class QTimer;

namespace orvel {

class AdhanPlayer;
class MediaPlayers;
class SystemEvents;

// What the model talks to. The clock is the application's one clock and must be given; anything
// else left empty gets the application's own.
struct AppModelServices {
    std::shared_ptr<const Clock> clock;
    std::shared_ptr<PrayerRepository> repository;       // default: cache folder + web client
    NotificationScheduler *scheduler = nullptr;         // where notices go; a silent model needs none
    SystemEvents *systemEvents = nullptr;               // sleep, clock and zone changes; none: never
    MediaPlayers *mediaPlayers = nullptr;               // paused by the entry sound; none: nothing
};

// Whether the model sets itself going: the minute timer, the system's events and a first load
// (`live`), or waits to be driven (`still`: snapshots and tests).
enum class ModelRun { live, still };

// Whether the model speaks: notifications, the entry sound and the notice after a sleep. The
// snapshot's model, and views under test, are silent.
enum class ModelVoice { audible, silent };

// The one object holding the application's state: the settings, today's and tomorrow's times,
// where they came from, and the current minute. Lives on the UI thread. Every setter stores the
// setting and sets off what depends on it; change signals fire only on a real change.
class AppModel : public QObject {
    Q_OBJECT

public:
    using Services = AppModelServices;

    static constexpr double offlineRetrySeconds = 1800;
    static constexpr int prefetchFromDay = 25;
    static constexpr int prefetchLookAheadDays = 10;

    AppModel(Services services, ModelRun run, ModelVoice voice, QObject *parent = nullptr);
    ~AppModel() override;

    // Settings (persisted): each one's value, and one way to change it that checks the value,
    // stores it, signals the change and sets off what depends on it (see Settings.h). A value
    // the setting's check refuses is dropped.
    template <typename T>
    const T &setting(const Setting<T> &key) const
    {
        return std::any_cast<const T &>(settings_[key.index()]);
    }
    template <typename T>
    void set(const Setting<T> &key, const std::type_identity_t<T> &value)
    {
        const T normal = SettingCodec::normalized(value);
        if (!key.accepts(normal) || setting(key) == normal)
            return;
        key.write(normal);
        settings_[key.index()] = normal;
        settingSet(key);
    }
    void toggleNotification(Prayer prayer);

    // State (not persisted).
    const std::optional<DayTimes> &today() const { return today_; }
    const std::optional<DayTimes> &tomorrow() const { return tomorrow_; }
    TimesSource source() const { return source_; }
    bool isLoading() const { return isLoading_; }
    Instant now() const { return now_; }
    PrayerRepository &repository() const { return *repository_; }
    AdhanPlayer &player() const { return *player_; }
    // Where notices go; none for a silent model.
    NotificationScheduler *notifications() const;

    // Derived values, computed on each reading.
    TimeZone zone() const;                 // the place's zone, else the machine's
    DayKey todayKey() const;
    std::optional<PrayerStatus> status() const;
    QString dateLine() const;              // "16 Kasım 2026 Pazartesi · 5 Cemaziyelahir 1448"
    std::vector<KerahatInterval> kerahatIntervals() const;
    bool isRamadanToday() const;
    bool nextIsRamadan() const;
    std::optional<int64_t> ramadanDay() const;
    // Today's religious days and nights from the loaded days' Hijri dates; none before the load.
    std::vector<ReligiousDay> religiousDays() const;

    // The settings that shape the status, as the command line reads them too.
    StatusSettings statusSettings() const;
    // What every status item shows now: text, spoken label and state, in the chosen style.
    StatusLine statusLine() const { return statusLine(setting(Settings::trayStyle)); }
    StatusLine statusLine(TrayStyle style) const;
    // The status image of a style (the snapshot draws every style), and the spoken label.
    StatusImage::Image trayImage(TrayStyle style, bool forceKerahatDot, qreal devicePixelRatio = 1.0) const;
    QString accessibilityLabel() const;
    // What Orvel tells panels and scripts outside it. With the icon-only style the title still
    // carries words: a panel that asks for the title has room for them; the choice concerns
    // Orvel's own icon.
    PublishedStatus publishedStatus() const;
    // What the status item in the desktop's panel shows now.
    StatusItemContent statusItemContent() const;
    bool showsIconRemaining(bool panelShowsLabel) const
    {
        return statusItemContent().showsIconRemaining(panelShowsLabel);
    }

    // Takes on what another program stored in the settings (orvel-cli choosing a place), as if
    // each changed setting had been set here.
    void adoptStoredSettings();
    // Starts a fresh load of today and tomorrow; a running load's answer is then dropped.
    void reload();
    // Advances the clock to the current minute and runs the per-minute checks.
    void tick();
    // The repository's answer for these days at the current place and method, off the UI thread.
    QFuture<PrayerRepository::Answer> days(const std::vector<DayKey> &keys) const;
    // Plays the selected sound, or stops it when something plays.
    void previewSound();

signals:
    // A setting changed: its stored name (see Settings.h).
    void settingChanged(const QString &name);
    void todayChanged();
    void tomorrowChanged();
    void sourceChanged();
    void isLoadingChanged();
    void nowChanged();
    // After any of the above: one signal for views that redraw on every change.
    void changed();
    // A load finished and its answer was applied (snapshot mode waits for it).
    void loadFinished();
    // The user opened one of Orvel's notifications: the panel is wanted.
    void panelRequested();

private:
    struct Private;

    void startTickTimer();
    void observeSystemEvents(SystemEvents *events);
    void applyLoad(const PrayerRepository::Answer &answer);
    void prefetchAhead(DayKey key, const Location &location, CalculationMethod method, const TimesOptions &options);
    void rescheduleNotifications();
    NotificationPlan notificationPlan() const;
    // Where the wall clock ran ahead of the monotonic one (a suspend, or the time was set),
    // the one notice of what entered meanwhile.
    void noticeSleep();
    void announceMissed(Instant since);
    void playAdhanIfNeeded();
    // For notification servers that ignore sound hints.
    void playMessageSound();
    std::optional<QString> soundPath() const;
    void setLoading(bool loading);
    // Sets the field and tells observers when the value really changed.
    template <typename T>
    bool assign(T &field, const T &value, void (AppModel::*signal)());

    // What a setting's change sets off, once its new value is in place.
    void settingSet(const SettingRow &row);

    std::unique_ptr<Private> d;

    // The settings' values, in the order of SettingRow::all().
    std::vector<std::any> settings_;

    std::optional<DayTimes> today_;
    std::optional<DayTimes> tomorrow_;
    TimesSource source_ = TimesSource::online;
    bool isLoading_ = false;
    Instant now_;
    ModelVoice voice_;
    std::shared_ptr<PrayerRepository> repository_;
    std::unique_ptr<AdhanPlayer> player_;
};

} // namespace orvel
