#pragma once

#include "AppModel.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "Defaults.h"
#include "Location.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"
#include "TimeZone.h"

#include <QCoreApplication>
#include <QSettings>
#include <QSignalSpy>
#include <QString>
#include <QTemporaryDir>
#include <QThreadPool>

#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace orvel::test {

constexpr int loadWaitMs = 10000;
constexpr std::string_view istanbulZone = "Europe/Istanbul";

// An instant given as Istanbul wall-clock time.
inline Instant at(int64_t year, int64_t month, int64_t day, int hour, int minute, int second = 0)
{
    return DayKey{year, month, day}.start(TimeZone::named(istanbulZone)) + hour * 3600.0 + minute * 60.0 + second;
}

// A day of six Istanbul clock times, given as {hour, minute}.
inline DayTimes day(DayKey key, const std::array<std::array<int, 2>, 6> &clock,
                    std::optional<HijriDate> hijri = std::nullopt)
{
    DayTimes times{key, {}, hijri};
    for (size_t index = 0; index < clock.size(); ++index)
        times.times[index] = at(key.year, key.month, key.day, clock[index][0], clock[index][1]);
    return times;
}

// Üsküdar on 10 March 2026 (21 Ramazan 1447) and the day after, as the calculator gives them.
inline DayTimes march10()
{
    return day({2026, 3, 10}, {{{5, 53}, {7, 17}, {13, 19}, {16, 35}, {19, 12}, {20, 31}}});
}
inline DayTimes march11()
{
    return day({2026, 3, 11}, {{{5, 51}, {7, 16}, {13, 19}, {16, 35}, {19, 13}, {20, 32}}});
}

inline Location uskudar()
{
    return {"İstanbul, Üsküdar", 41.0255, 29.0153, std::string(istanbulZone)};
}

// A model on a settings file and a cache of its own, whose "web service" answers with the
// calculator's months, or fails on demand.
struct ViewHarness {
    ViewHarness()
        : failing(std::make_shared<std::atomic<bool>>(false))
        , repository(std::make_shared<PrayerRepository>(folder.filePath(QStringLiteral("Cache")).toStdString(),
                                                        fetch(failing)))
    {
        Defaults::setStore(std::make_unique<QSettings>(folder.filePath(QStringLiteral("Orvel.conf")),
                                                       QSettings::IniFormat));
    }
    ~ViewHarness()
    {
        QThreadPool::globalInstance()->waitForDone(loadWaitMs);
        QCoreApplication::sendPostedEvents();
        Defaults::setStore(nullptr);
    }

    static PrayerRepository::MonthFetch fetch(std::shared_ptr<std::atomic<bool>> failing)
    {
        return [failing](MonthKey month, const Location &location, CalculationMethod method) {
            if (*failing)
                throw std::runtime_error("no network");
            std::vector<DayTimes> days;
            for (const DayKey &key : month.days())
                days.push_back(PrayerCalculator::times(key, location, method));
            return days;
        };
    }

    std::unique_ptr<AppModel> model(Instant fixedNow)
    {
        return std::make_unique<AppModel>(fixedNow, false, AppModel::Services{nullptr, repository, nullptr, nullptr});
    }

    // Moves the model to Üsküdar and waits for its days.
    static bool loadUskudar(AppModel &model)
    {
        QSignalSpy finished(&model, &AppModel::loadFinished);
        model.setLocation(uskudar());
        return finished.wait(loadWaitMs);
    }

    QTemporaryDir folder;
    std::shared_ptr<std::atomic<bool>> failing;
    std::shared_ptr<PrayerRepository> repository;
};

} // namespace orvel::test
