#pragma once

#include "Colors.h"

#include <QTimer>
#include <QWidget>

namespace orvel {

class AdhanPlayer;
class SymbolButton;
class TightLabel;

// Stands at the top of the panel while the entry sound plays, with a button that stops it.
class PlayingBanner : public QWidget {
    Q_OBJECT

public:
    static constexpr qreal cornerRadius = 10;

    explicit PlayingBanner(AdhanPlayer &player, QWidget *parent = nullptr);

    void refresh();


protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void animate();

    AdhanPlayer &player_;
    TightLabel *speaker_;
    TightLabel *title_;
    SymbolButton *stop_;
    // The speaker pulses while the sound plays and the banner is on screen.
    QTimer pulse_;
    int phase_ = 0;
    Appearance appearance_ = Appearance::light;
};

} // namespace orvel
