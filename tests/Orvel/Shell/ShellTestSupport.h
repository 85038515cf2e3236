#pragma once

#include "AppModel.h"
#include "Clock.h"
#include "Defaults.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"
#include "Snapshot.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>
#include <stdexcept>

namespace orvel::test {

// 10 March 2026 in Üsküdar, the day the shell tests live in.
inline DayTimes testDay()
{
    return PrayerCalculator::times(DayKey{2026, 3, 10}, Snapshot::uskudar(), CalculationMethod::diyanet);
}

// A model on a clock the test drives, with settings in a temporary file and a web service that
// never answers, so that every day comes from the calculator.
struct OfflineModel {
    QTemporaryDir folder;
    std::shared_ptr<ManualClock> clock;
    std::unique_ptr<AppModel> model;
    AppModel *current = nullptr; // still valid after `model` was handed on

    explicit OfflineModel(Instant start)
        : clock(std::make_shared<ManualClock>(start))
    {
        Defaults::setStore(std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat));
        AppModel::Services services;
        services.clock = clock;
        services.repository = std::make_shared<PrayerRepository>(
            folder.filePath("cache").toStdString(),
            [](MonthKey, const Location &, CalculationMethod) -> std::vector<DayTimes> {
                throw std::runtime_error("no network");
            });
        model = std::make_unique<AppModel>(std::nullopt, false, services);
        current = model.get();
        QSignalSpy loaded(current, &AppModel::loadFinished);
        current->setLocation(Snapshot::uskudar());
        if (current->isLoading())
            loaded.wait(10'000);
    }

    void moveTo(Instant instant)
    {
        clock->set(instant);
        current->tick();
    }
};

} // namespace orvel::test
