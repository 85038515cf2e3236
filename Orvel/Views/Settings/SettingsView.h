#pragma once

#include "NotificationSettingsView.h"

#include <QWidget>

#include <memory>

class QTabWidget;

namespace orvel {

class AboutView;
class AppModel;
class GeneralSettingsView;
class KerahatSettingsView;
class LocationService;
class TimesSettingsView;

// The settings window: "Genel", "Vakitler", "Bildirimler", "Kerahat" and "Hakkında" as tabs, 560 points
// wide. Every control writes straight into the model and follows changes made elsewhere.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    static constexpr int windowWidth = 560;

    SettingsView(AppModel &model, std::unique_ptr<LocationService> locator,
                 NotificationSettingsView::Permission permission = {}, QWidget *parent = nullptr);
    ~SettingsView() override;

    GeneralSettingsView *general() const { return general_; }

    // Tints every tab for the appearance (the desktop's, or a forced one for renders).
    void applyAppearance();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    std::unique_ptr<LocationService> locator_;
    QTabWidget *tabs_ = nullptr;
    GeneralSettingsView *general_ = nullptr;
    TimesSettingsView *times_ = nullptr;
    NotificationSettingsView *notifications_ = nullptr;
    KerahatSettingsView *kerahat_ = nullptr;
    AboutView *about_ = nullptr;
    bool applying_ = false;
};

} // namespace orvel
