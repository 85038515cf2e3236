#include "NotificationScheduler.h"

#include "Clock.h"
#include "NotificationBackend.h"
#include "OrvelFormat.h"
#include "ReligiousDays.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numeric>

namespace orvel {

namespace {

// A machine that slept through a moment wakes with timers long overdue; the model reloads and
// reschedules on wake, so such a late notification would only be stale noise.
constexpr double staleAfterSeconds = 120;
// Timers count in monotonic time, which drifts from the wall clock (and QTimer holds at most
// about 24 days), so long waits are re-armed in steps and checked against the clock.
constexpr std::chrono::milliseconds longestWait = std::chrono::hours(1);
// Coarse timers may come back up to a second early; only more than this counts as a step.
constexpr double earlySeconds = 2;

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

NotificationRequest entryRequest(const QString &day, Prayer prayer, Instant time, const QString &clock,
                                 const NotificationPlan &plan, bool ramadan, const TimeZone &machineZone)
{
    auto [title, body] = NotificationScheduler::texts(prayer, clock, text(plan.location.name), ramadan);
    const bool quiet = plan.quietHours.contains(time, machineZone);
    const bool sound = plan.systemSound && !quiet;
    // Güneş has no call to prayer, so Orvel plays nothing then.
    const bool ownSound = plan.ownSound && !quiet && prayer != Prayer::gunes;
    return {day + u'-' + text(prayer.id()), std::move(title), std::move(body), sound, time, ownSound};
}

NotificationRequest reminderRequest(const QString &day, Prayer prayer, Instant pre, const QString &clock,
                                    const NotificationPlan &plan, bool ramadan, const TimeZone &machineZone)
{
    return {
        day + u'-' + text(prayer.id()) + QStringLiteral("-pre"),
        text(prayer.countdownPhrase(ramadan)) + u' ' + QString::number(plan.reminderMinutes) + QStringLiteral(" dakika"),
        text(prayer.displayName(ramadan)) + QStringLiteral(" vakti: ") + clock,
        !plan.quietHours.contains(pre, machineZone),
        pre,
    };
}

NotificationRequest kerahatRequest(const KerahatInterval &interval, const TimeZone &zone)
{
    // Whole seconds since 1970, toward zero.
    const auto startSeconds = static_cast<int64_t>(interval.start.unixSeconds());
    return {
        QStringLiteral("kerahat-") + text(interval.kind.id()) + u'-' + QString::number(startSeconds),
        QStringLiteral("Kerahat vakti"),
        text(interval.kind.explanation()) + QStringLiteral(" · ") + text(OrvelFormat::timeWithDative(interval.end, zone))
            + QStringLiteral(" kadar namaz kılmak mekruhtur."),
        false,
        interval.start,
    };
}

std::optional<NotificationRequest> fridayRequest(const DayTimes &day, const NotificationPlan &plan, Instant now,
                                                 const TimeZone &machineZone)
{
    if (plan.fridayMinutes < 1 || !day.day.isFriday())
        return std::nullopt;
    const Instant at = day[Prayer::ogle] - static_cast<double>(plan.fridayMinutes) * 60.0;
    // A reminder is no reason to break the quiet.
    if (!(at > now) || plan.quietHours.contains(at, machineZone))
        return std::nullopt;
    return NotificationRequest{
        text(day.day.description()) + QStringLiteral("-cuma"),
        QStringLiteral("Cuma namazı yaklaşıyor"),
        text(plan.location.name) + QStringLiteral(" için öğle ezanına ") + QString::number(plan.fridayMinutes)
            + QStringLiteral(" dakika kaldı. Hayırlı Cumalar."),
        true,
        at,
    };
}

// At Akşam of a holy night's evening ("Bu gece Berat Kandili") and of a Bayram's eve ("Yarın
// Ramazan Bayramı"), from the day's Hijri date and the next's.
std::optional<NotificationRequest> religiousDayRequest(const DayTimes &day, const DayTimes &next,
                                                       const NotificationPlan &plan, Instant now,
                                                       const TimeZone &machineZone)
{
    const Instant at = day[Prayer::aksam];
    if (!plan.religiousDays || !(at > now) || plan.quietHours.contains(at, machineZone))
        return std::nullopt;
    for (const ReligiousDay &found : ReligiousDays::of(day.day, day.hijriOrApproximate(), next.hijriOrApproximate())) {
        const QString place = text(plan.location.name);
        if (found.kind == ReligiousDay::Kind::night) {
            // "Berat Kandiliniz", "Kadir Geceniz".
            const std::string wish = found.name.ends_with("Gecesi") ? found.name.substr(0, found.name.size() - 2) + "niz"
                                                                     : found.name + "niz";
            return NotificationRequest{text(day.day.description()) + QStringLiteral("-dini"), text(found.headline()),
                                       text(wish) + QStringLiteral(" mübarek olsun. · ") + place, true, at};
        }
        if (found.kind == ReligiousDay::Kind::arefe) {
            const std::string bayram = found.name.substr(0, found.name.find(" Arefesi"));
            return NotificationRequest{text(day.day.description()) + QStringLiteral("-dini"),
                                       QStringLiteral("Yarın ") + text(bayram),
                                       QStringLiteral("Bayramınız mübarek olsun. · ") + place, true, at};
        }
    }
    return std::nullopt;
}

// More requests than may be pending: the soonest stay, in their original order.
std::vector<NotificationRequest> soonest(std::vector<NotificationRequest> requests, size_t limit)
{
    if (requests.size() <= limit)
        return requests;
    std::vector<size_t> order(requests.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return requests[a].fireAt < requests[b].fireAt; });
    order.resize(limit);
    std::sort(order.begin(), order.end());
    std::vector<NotificationRequest> kept;
    kept.reserve(limit);
    for (const size_t index : order)
        kept.push_back(std::move(requests[index]));
    return kept;
}

} // namespace

struct NotificationScheduler::Private {
    struct Entry {
        NotificationRequest request;
        std::unique_ptr<QTimer> timer;
    };

    std::shared_ptr<NotificationBackend> backend;
    std::shared_ptr<const Clock> clock;
    std::vector<Entry> pending;
    // Bumped by every reschedule; a queued rebuild of an older call sees it and gives way.
    quint64 generation = 0;

    void arm(QTimer &timer, Instant fireAt) const
    {
        const double remainingMs = std::max(0.0, (fireAt - clock->now()) * 1000.0);
        const double waitMs = std::min(remainingMs, static_cast<double>(longestWait.count()));
        timer.start(static_cast<int>(std::ceil(waitMs)));
    }
};

NotificationScheduler::NotificationScheduler(std::shared_ptr<NotificationBackend> backend,
                                             std::shared_ptr<const Clock> clock, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    d->backend = std::move(backend);
    d->clock = std::move(clock);
    d->backend->setActionHandler([this](const QString &action) {
        if (action == QLatin1String(NotificationBackend::stopSoundAction))
            emit stopSoundRequested();
        else if (action == QLatin1String(NotificationBackend::openPanelAction))
            emit openPanelRequested();
    });
}

NotificationScheduler::~NotificationScheduler() = default;

void NotificationScheduler::setMessageSound(std::function<void()> play)
{
    d->backend->setMessageSound(std::move(play));
}

void NotificationScheduler::reschedule(const NotificationPlan &plan)
{
    const quint64 generation = ++d->generation;
    QMetaObject::invokeMethod(
        this,
        [this, plan, generation] {
            if (generation == d->generation)
                replacePending(plan);
        },
        Qt::QueuedConnection);
}

std::vector<NotificationRequest> NotificationScheduler::requests(const NotificationPlan &plan, Instant now)
{
    const TimeZone zone = plan.location.timeZone();
    // Quiet hours belong to the person at the machine, wherever the place is.
    const TimeZone machineZone = TimeZone::current();
    std::vector<NotificationRequest> requests;

    for (const DayTimes &day : plan.days) {
        const bool ramadan = plan.ramadanMode && day.hijriOrApproximate().month == 9;
        const QString dayId = text(day.day.description());
        for (const Prayer::Value value : Prayer::all) {
            if (!plan.enabled.contains(value))
                continue;
            const Prayer prayer(value);
            const Instant time = day[prayer];
            const QString clock = text(OrvelFormat::time(time, zone));
            if (time > now)
                requests.push_back(entryRequest(dayId, prayer, time, clock, plan, ramadan, machineZone));
            if (plan.reminderMinutes < 1)
                continue;
            const Instant pre = time - static_cast<double>(plan.reminderMinutes) * 60.0;
            if (pre > now)
                requests.push_back(reminderRequest(dayId, prayer, pre, clock, plan, ramadan, machineZone));
        }
    }
    for (const KerahatInterval &interval : plan.kerahat) {
        if (interval.start > now)
            requests.push_back(kerahatRequest(interval, zone));
    }
    for (const DayTimes &day : plan.days) {
        if (auto reminder = fridayRequest(day, plan, now, machineZone))
            requests.push_back(std::move(*reminder));
    }
    for (size_t i = 0; i + 1 < plan.days.size(); ++i) {
        if (auto notice = religiousDayRequest(plan.days[i], plan.days[i + 1], plan, now, machineZone))
            requests.push_back(std::move(*notice));
    }
    return soonest(std::move(requests), maximumPending);
}

std::optional<NotificationRequest> NotificationScheduler::missedWhileAsleep(const NotificationPlan &plan, Instant since,
                                                                         Instant now)
{
    std::optional<std::pair<Prayer, Instant>> latest;
    for (const DayTimes &day : plan.days) {
        for (const Prayer::Value value : Prayer::all) {
            const Instant time = day[Prayer(value)];
            if (plan.enabled.contains(value) && since < time && !(now < time) && (!latest || latest->second < time))
                latest = std::pair{Prayer(value), time};
        }
    }
    // A time long past, or followed by the next one, is no news on waking.
    if (!latest || now - latest->second > missedWithinSeconds)
        return std::nullopt;
    const auto [prayer, time] = *latest;
    const TimeZone zone = plan.location.timeZone();
    const QString name = text(prayer == Prayer::gunes ? std::string_view("Güneş") : prayer.name());
    const QString summary = prayer == Prayer::gunes ? QStringLiteral("Güneş doğdu") : name + QStringLiteral(" vakti girdi");
    return NotificationRequest{
        QStringLiteral("missed-") + QString::number(static_cast<int64_t>(time.unixSeconds())),
        summary,
        QStringLiteral("Bilgisayar uykudayken, ") + text(OrvelFormat::timeWithLocative(time, zone)) + QStringLiteral(" · ")
            + text(plan.location.name),
        false,
        now,
    };
}

void NotificationScheduler::soundEnded()
{
    d->backend->soundEnded();
}

void NotificationScheduler::announce(const NotificationRequest &request)
{
    if (d->backend->isAvailable())
        d->backend->show(request);
}

std::pair<QString, QString> NotificationScheduler::texts(Prayer prayer, const QString &time, const QString &location,
                                                         bool ramadan)
{
    if (prayer == Prayer::imsak && ramadan)
        return {QStringLiteral("İmsak · ") + time, location + QStringLiteral(" için sahur vakti sona erdi.")};
    if (prayer == Prayer::gunes)
        return {QStringLiteral("Güneş doğuşu · ") + time, location + QStringLiteral(" için güneş doğdu.")};
    if (prayer == Prayer::aksam && ramadan)
        return {QStringLiteral("İftar vakti · ") + time,
                location + QStringLiteral(" için iftar vakti girdi. Hayırlı iftarlar.")};
    const std::string name(prayer.name());
    return {text(name) + QStringLiteral(" ezanı · ") + time,
            location + QStringLiteral(" için ") + text(OrvelFormat::lowercased(name)) + QStringLiteral(" vakti girdi.")};
}

std::vector<NotificationRequest> NotificationScheduler::pending() const
{
    std::vector<NotificationRequest> requests;
    requests.reserve(d->pending.size());
    for (const Private::Entry &entry : d->pending)
        requests.push_back(entry.request);
    return requests;
}

bool NotificationScheduler::isDenied() const
{
    return !d->backend->isAvailable();
}

void NotificationScheduler::openSystemSettings() const
{
    d->backend->openSettings();
}

bool NotificationScheduler::canOpenSystemSettings() const
{
    return d->backend->canOpenSettings();
}

void NotificationScheduler::replacePending(const NotificationPlan &plan)
{
    const std::vector<NotificationRequest> before = pending();
    d->pending.clear();
    if (!plan.enabled.empty() || !plan.kerahat.empty()) {
        for (NotificationRequest &request : requests(plan, d->clock->now())) {
            auto timer = std::make_unique<QTimer>();
            timer->setSingleShot(true);
            const QTimer *key = timer.get();
            connect(timer.get(), &QTimer::timeout, this, [this, key] { timerFired(key); });
            d->arm(*timer, request.fireAt);
            d->pending.push_back({std::move(request), std::move(timer)});
        }
    }
    if (pending() != before)
        emit pendingChanged();
}

void NotificationScheduler::timerFired(const QObject *timer)
{
    const auto entry = std::find_if(d->pending.begin(), d->pending.end(),
                                    [timer](const Private::Entry &candidate) { return candidate.timer.get() == timer; });
    if (entry == d->pending.end())
        return;
    const double late = d->clock->now() - entry->request.fireAt;
    if (late < -earlySeconds) {
        d->arm(*entry->timer, entry->request.fireAt);
        return;
    }

    const NotificationRequest request = entry->request;
    // The timer is the sender of this call, so it is deleted once the call is over.
    entry->timer.release()->deleteLater();
    d->pending.erase(entry);
    emit pendingChanged();
    if (late > staleAfterSeconds)
        return;
    d->backend->show(request);
    emit fired(request.identifier);
}

} // namespace orvel
