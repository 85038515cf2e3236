#pragma once

#include <QWidget>

class QComboBox;

namespace orvel {

class AppModel;

namespace SettingsForm {
class Switch;
} // namespace SettingsForm

// The "Kerahat" tab: whether the intervals show, the status item's dot, the notice when one
// starts, and the length of the sunrise and sunset intervals.
class KerahatSettingsView : public QWidget {
    Q_OBJECT

public:
    explicit KerahatSettingsView(AppModel &model, QWidget *parent = nullptr);

    void refresh();

private:
    AppModel &model_;
    SettingsForm::Switch *show_ = nullptr;
    SettingsForm::Switch *dot_ = nullptr;
    SettingsForm::Switch *notify_ = nullptr;
    QComboBox *minutes_ = nullptr;
    QWidget *dependent_[3] = {};
};

} // namespace orvel
