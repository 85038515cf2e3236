#include "PrayerList.h"

#include "AppModel.h"
#include "KerahatRow.h"
#include "OrvelFormat.h"
#include "PanelRules.h"
#include "PrayerRow.h"

#include <QVBoxLayout>

namespace orvel {

namespace {

constexpr int rowSpacing = 0;

struct Entry {
    std::optional<Prayer> prayer;
    std::optional<KerahatInterval> interval;
};

std::vector<Entry> entries(const std::vector<KerahatInterval> &intervals)
{
    std::vector<Entry> all;
    for (const Prayer::Value prayer : Prayer::all) {
        for (const KerahatInterval &interval : PanelRules::kerahatBefore(prayer, intervals))
            all.push_back({std::nullopt, interval});
        all.push_back({Prayer(prayer), std::nullopt});
        for (const KerahatInterval &interval : PanelRules::kerahatAfter(prayer, intervals))
            all.push_back({std::nullopt, interval});
    }
    return all;
}

} // namespace

PrayerList::PrayerList(AppModel &model, QWidget *parent)
    : QWidget(parent)
    , model_(model)
    , layout_(new QVBoxLayout(this))
{
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(rowSpacing);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void PrayerList::refresh(const PrayerStatus &status, const DayTimes &today)
{
    const Instant now = model_.now();
    const TimeZone zone = model_.zone();
    const Appearance appearance = Colors::current();
    const std::vector<KerahatInterval> intervals = model_.kerahatIntervals();
    const std::vector<Entry> all = entries(intervals);

    std::vector<Place> places;
    for (const Entry &entry : all)
        places.push_back(entry.prayer ? Place{false, entry.prayer->index()} : Place{true, entry.interval->kind});
    if (places != places_)
        rebuild(places);

    const bool ramadanToday = model_.isRamadanToday();
    for (size_t index = 0; index < all.size(); ++index) {
        const Entry &entry = all[index];
        if (entry.prayer) {
            const Prayer prayer = *entry.prayer;
            const QString time = QString::fromStdString(OrvelFormat::time(today[prayer], zone));
            static_cast<PrayerRow *>(rows_[index])
                ->setContent({prayer, time, PanelRules::rowState(prayer, status, today, now),
                              model_.setting(Settings::notifiedPrayers).contains(prayer),
                              PanelRules::prayerTag(prayer, ramadanToday, today.isEstimated(prayer)), appearance});
            continue;
        }
        const KerahatInterval &interval = *entry.interval;
        const bool countdown = PanelRules::showsCountdown(interval, intervals, now);
        static_cast<KerahatRow *>(rows_[index])
            ->setContent({interval, PanelRules::kerahatRowState(interval, now),
                          countdown ? std::optional(PanelRules::kerahatCountdown(interval, now)) : std::nullopt,
                          PanelRules::kerahatRange(interval, zone),
                          PanelRules::kerahatAccessibleName(interval, zone), appearance});
    }
}

void PrayerList::rebuild(const std::vector<Place> &places)
{
    // A row may be the sender of the change that brought us here: let it finish first.
    for (QWidget *row : rows_) {
        layout_->removeWidget(row);
        row->hide();
        row->deleteLater();
    }
    rows_.clear();
    for (const Place &place : places) {
        QWidget *row = nullptr;
        if (place.isKerahat) {
            row = new KerahatRow(this);
        } else {
            auto *prayerRow = new PrayerRow(this);
            connect(prayerRow, &PrayerRow::toggleRequested, this,
                    [this](Prayer prayer) { model_.toggleNotification(prayer); });
            row = prayerRow;
        }
        layout_->addWidget(row);
        rows_.push_back(row);
    }
    places_ = places;
}

} // namespace orvel
