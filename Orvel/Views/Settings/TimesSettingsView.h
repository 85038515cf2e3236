#pragma once

#include <QWidget>

#include <array>

class QComboBox;
class QSpinBox;

namespace orvel {

class AppModel;

namespace SettingsForm {
class Switch;
} // namespace SettingsForm

// The "Vakitler" tab: minutes added to each prayer, the Hijri date's correction, the rule for
// places where the sun does not sink far enough, and where Diyanet's times come from.
class TimesSettingsView : public QWidget {
    Q_OBJECT

public:
    explicit TimesSettingsView(AppModel &model, QWidget *parent = nullptr);

    void refresh();

private:
    QWidget *makeAdjustmentSection();
    QWidget *makeCalendarSection();
    void store();

    AppModel &model_;
    std::array<QSpinBox *, 6> adjustments_{};
    QSpinBox *hijri_ = nullptr;
    QComboBox *highLatitude_ = nullptr;
    SettingsForm::Switch *fromService_ = nullptr;
};

} // namespace orvel
