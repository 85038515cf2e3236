#pragma once

// Qt first: moc cannot read <concepts> unless Qt's headers came before it.
#include <QWidget>

#include "DayTimes.h"
#include "PrayerSchedule.h"

#include <vector>

class QVBoxLayout;

namespace orvel {

class AppModel;
class KerahatRow;
class PrayerRow;

// The day's six times in order, each kerahat interval as a row of its own beside the time it
// belongs to. Rows are made again only when the set of rows changes; otherwise each row is
// told what it now shows and repaints only if that differs.
class PrayerList : public QWidget {
    Q_OBJECT

public:
    explicit PrayerList(AppModel &model, QWidget *parent = nullptr);

    void refresh(const PrayerStatus &status, const DayTimes &today);

private:
    // What sits in one place of the list: a prayer, or a kerahat interval of a kind.
    struct Place {
        bool isKerahat = false;
        int value = 0; // Prayer::Value or KerahatKind::Value

        bool operator==(const Place &) const = default;
    };

    void rebuild(const std::vector<Place> &places);

    AppModel &model_;
    QVBoxLayout *layout_;
    std::vector<Place> places_;
    std::vector<QWidget *> rows_;
};

} // namespace orvel
