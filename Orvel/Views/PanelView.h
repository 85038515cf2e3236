#pragma once

#include "Colors.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace orvel {

class AppModel;
class HeroCard;
class KerahatBanner;
class PlayingBanner;
class PrayerList;
class Spinner;
class SymbolButton;
class TightLabel;

// The panel's content: the place and date, a banner while the entry sound plays, a banner
// while a kerahat interval runs, the hero card, the day's list and a footer with the source of
// the times, Settings and Quit. Until a day is loaded a spinner stands in for the day's views.
// It reads the model and follows its changes; it keeps nothing of its own.
class PanelView : public QWidget {
    Q_OBJECT

public:
    static constexpr int panelWidth = 330;
    static constexpr int padding = 14;
    static constexpr int spinnerHeight = 320;

    PanelView(AppModel &model, std::function<void()> openImsakiye, std::function<void()> openSettings,
                std::function<void()> quit, QWidget *parent = nullptr);

    // Brings every part up to date with the model; parts whose content is unchanged do not repaint.
    void refresh();


protected:
    bool event(QEvent *event) override;

private:
    QWidget *makeHeader();
    QWidget *makeFooter();
    void refreshHeader(Appearance appearance);
    void refreshDay();
    void refreshFooter(Appearance appearance);
    void applyAppearance(Appearance appearance);

    AppModel &model_;
    TightLabel *place_ = nullptr;
    TightLabel *date_ = nullptr;
    TightLabel *ramadan_ = nullptr;
    SymbolButton *imsakiye_ = nullptr;
    SymbolButton *reload_ = nullptr;
    PlayingBanner *playing_ = nullptr;
    QWidget *playingGap_ = nullptr;
    KerahatBanner *kerahatBanner_ = nullptr;
    QWidget *kerahatGap_ = nullptr;
    HeroCard *hero_ = nullptr;
    QWidget *listGap_ = nullptr;
    PrayerList *list_ = nullptr;
    Spinner *spinner_ = nullptr;
    QWidget *divider_ = nullptr;
    TightLabel *source_ = nullptr;
    SymbolButton *settings_ = nullptr;
    SymbolButton *quit_ = nullptr;
    std::optional<Appearance> appearance_;
};

} // namespace orvel
