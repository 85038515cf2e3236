#pragma once

#include "Colors.h"

#include <QWidget>

namespace orvel {

class AppModel;
class TightLabel;
struct KerahatInterval;

// Stands above the hero card while a kerahat interval is in force: what it is, until when,
// and the minutes left.
class KerahatBanner : public QWidget {
    Q_OBJECT

public:
    static constexpr qreal cornerRadius = 10;

    explicit KerahatBanner(QWidget *parent = nullptr);

    void refresh(const AppModel &model, const KerahatInterval &interval);


protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TightLabel *icon_;
    TightLabel *title_;
    TightLabel *detail_;
    TightLabel *minutes_;
    Appearance appearance_ = Appearance::light;
};

} // namespace orvel
