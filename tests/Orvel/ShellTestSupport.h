#pragma once

#include "AppModel.h"
#include "Clock.h"
#include "Settings.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"
#include "Snapshot.h"
#include "StatusItem.h"

#include <QApplication>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QWidget>

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
        SettingsStore::setStore(std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat));
        AppModel::Services services;
        services.clock = clock;
        services.repository = std::make_shared<PrayerRepository>(
            folder.filePath("cache").toStdString(),
            [](MonthKey, const Location &, CalculationMethod) -> std::vector<DayTimes> {
                throw std::runtime_error("no network");
            });
        model = std::make_unique<AppModel>(services, ModelRun::still, ModelVoice::audible);
        current = model.get();
        QSignalSpy loaded(current, &AppModel::loadFinished);
        current->set(Settings::location, Snapshot::uskudar());
        if (current->isLoading())
            loaded.wait(10'000);
    }

    // The store lets go of its file before the folder goes; else its last write at exit makes the
    // folder again.
    ~OfflineModel()
    {
        model.reset();
        SettingsStore::setStore(nullptr);
    }

    void moveTo(Instant instant)
    {
        clock->set(instant);
        current->tick();
    }
};

// A status item that only counts what the application asks of it.
struct FakeStatusItem : StatusItem {
    explicit FakeStatusItem(bool available) : available(available) {}
    bool isAvailable() const override { return available; }
    void show() override { shown = true; }
    void update(const StatusItemContent &) override { ++updates; }
    void setMenu(QMenu *items) override { menu = items; }
    QRect geometry() const override { return {600, 0, 24, 24}; }

    bool available;
    bool shown = false;
    int updates = 0;
    QMenu *menu = nullptr;
};

inline int visibleWindowsTitled(const QString &title)
{
    int count = 0;
    for (QWidget *widget : QApplication::topLevelWidgets())
        count += widget->isVisible() && widget->windowTitle() == title ? 1 : 0;
    return count;
}

} // namespace orvel::test
