#pragma once

#include "Colors.h"
#include "DayTimes.h"
#include "PrayerSchedule.h"

#include <QWidget>

namespace orvel {

class AppModel;
class DayProgressBar;
class TightLabel;

// The card with the time left until the next prayer time, its clock time, the next time's
// symbol, the day's progress bar and the day's first and last times.
class HeroCard : public QWidget {
    Q_OBJECT

public:
    static constexpr qreal cornerRadius = 12;
    static constexpr int tileSize = 46;

    explicit HeroCard(QWidget *parent = nullptr);

    void refresh(const AppModel &model, const PrayerStatus &status, const DayTimes &today);

    QString tileSymbol() const { return tileSymbol_; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TightLabel *title_;
    TightLabel *bigTime_;
    TightLabel *subtitle_;
    QWidget *tile_;
    DayProgressBar *bar_;
    TightLabel *imsak_;
    TightLabel *legend_;
    TightLabel *yatsi_;
    QString tileSymbol_;
    Appearance appearance_ = Appearance::light;
};

} // namespace orvel
