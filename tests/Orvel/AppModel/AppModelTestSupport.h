#pragma once

#include "AppModel.h"
#include "Clock.h"
#include "Defaults.h"
#include "NotificationBackend.h"
#include "NotificationScheduler.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"
#include "SoundLibrary.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThreadPool>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <ostream>
#include <stdexcept>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace orvel::test {

constexpr int loadWaitMs = 10000;

// An instant given as wall-clock time in a zone.
inline Instant at(int64_t year, int64_t month, int64_t day, int hour, int minute, int second = 0,
                  std::string_view zone = "Europe/Istanbul")
{
    return DayKey{year, month, day}.start(TimeZone::named(zone)) + hour * 3600.0 + minute * 60.0 + second;
}

// The online source as the repository sees it: whole months from the calculator, a failure on
// demand, and a gate that holds back the months of one place until released.
class MonthSource : public std::enable_shared_from_this<MonthSource> {
public:
    PrayerRepository::MonthFetch fetch()
    {
        return [self = shared_from_this()](MonthKey month, const Location &location, CalculationMethod method) {
            return self->answer(month, location, method);
        };
    }

    void setFailing(bool failing)
    {
        const std::lock_guard lock(mutex_);
        failing_ = failing;
    }
    void holdBack(const std::string &placeName)
    {
        const std::lock_guard lock(mutex_);
        heldPlace_ = placeName;
    }
    void release()
    {
        {
            const std::lock_guard lock(mutex_);
            heldPlace_.clear();
        }
        released_.notify_all();
    }
    std::vector<MonthKey> asked() const
    {
        const std::lock_guard lock(mutex_);
        return asked_;
    }
    bool wasAsked(MonthKey month) const
    {
        const auto months = asked();
        return std::find(months.begin(), months.end(), month) != months.end();
    }

private:
    std::vector<DayTimes> answer(MonthKey month, const Location &location, CalculationMethod method)
    {
        std::unique_lock lock(mutex_);
        asked_.push_back(month);
        released_.wait(lock, [&] { return heldPlace_.empty() || heldPlace_ != location.name; });
        if (failing_)
            throw std::runtime_error("no network");
        lock.unlock();
        std::vector<DayTimes> days;
        for (const DayKey &day : month.days())
            days.push_back(PrayerCalculator::times(day, location, method));
        return days;
    }

    mutable std::mutex mutex_;
    std::condition_variable released_;
    bool failing_ = false;
    std::string heldPlace_;
    std::vector<MonthKey> asked_;
};

class RecordingBackend : public NotificationBackend {
public:
    bool isAvailable() const override { return true; }
    void show(const NotificationRequest &request) override { shown.push_back(request); }
    std::vector<NotificationRequest> shown;
};

// Everything a model needs, kept away from the user's settings, cache and sounds.
struct Harness {
    explicit Harness(Instant start)
        : clock(std::make_shared<ManualClock>(start))
        , source(std::make_shared<MonthSource>())
        , repository(std::make_shared<PrayerRepository>(folder.filePath("Cache").toStdString(), source->fetch()))
        , scheduler(std::make_shared<RecordingBackend>(), clock)
    {
        useStore(folder.filePath("Orvel.conf"));
        SoundLibrary::setFolder(folder.filePath("Sounds"));
    }
    ~Harness()
    {
        source->release();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::sendPostedEvents();
        Defaults::setStore(nullptr);
        SoundLibrary::setFolder(QString());
    }

    static void useStore(const QString &path)
    {
        Defaults::setStore(std::make_unique<QSettings>(path, QSettings::IniFormat));
    }

    // The store as the next run of the application reads it: written out, then parsed afresh
    // (from a copy, as QSettings shares parsed files within one process).
    void reopenStore()
    {
        Defaults::store().sync();
        const QString copy = folder.filePath(QStringLiteral("Orvel-%1.conf").arg(++reopened));
        QFile::copy(Defaults::store().fileName(), copy);
        useStore(copy);
    }

    std::unique_ptr<AppModel> model(std::optional<Instant> fixedNow = std::nullopt)
    {
        return std::make_unique<AppModel>(fixedNow, false, AppModel::Services{clock, repository, &scheduler, nullptr});
    }

    QTemporaryDir folder;
    std::shared_ptr<ManualClock> clock;
    std::shared_ptr<MonthSource> source;
    std::shared_ptr<PrayerRepository> repository;
    NotificationScheduler scheduler;
    int reopened = 0;
};

inline bool reloadAndWait(AppModel &model)
{
    QSignalSpy finished(&model, &AppModel::loadFinished);
    model.reload();
    return finished.wait(loadWaitMs);
}

// Lets every running load finish and delivers what it posted to the UI thread.
inline void settleWorkers()
{
    QThreadPool::globalInstance()->waitForDone(loadWaitMs);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

} // namespace orvel::test
