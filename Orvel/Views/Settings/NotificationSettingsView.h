#pragma once

#include <QWidget>

#include "AdhanSound.h"
#include "Prayer.h"

#include <functional>
#include <map>
#include <optional>

class QComboBox;
class QLabel;
class QPushButton;
class QSlider;
class QTimeEdit;

namespace orvel {

class AppModel;

namespace SettingsForm {
class Chip;
class Switch;
} // namespace SettingsForm

// The "Bildirimler" tab: which times notify, the early reminder, the entry sound with its file,
// volume and preview, and the quiet hours.
class NotificationSettingsView : public QWidget {
    Q_OBJECT

public:
    static constexpr auto importFailed = "Bu dosya çalınamadı. MP3, M4A, WAV veya AIFF deneyin.";
    static constexpr std::array<int, 5> reminderOptions{5, 10, 15, 30, 45};

    // How the tab learns whether notifications can be shown at all, and opens the desktop's
    // notification settings; an empty check asks the application's notification scheduler.
    struct Permission {
        std::function<bool()> isDenied;     // may block briefly: called off the UI thread
        std::function<void()> openSettings; // none: the desktop has no tool for them
    };

    explicit NotificationSettingsView(AppModel &model, Permission permission = {}, QWidget *parent = nullptr);

    // Asks for a sound file and makes it the entry sound.
    void chooseFile();
    std::optional<QString> importError() const;

    void refresh();

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeNotificationSection();
    QWidget *makeSoundSection();
    void setImportError(const std::optional<QString> &error);
    void setQuietMinutes(bool start, const QTime &time);
    void checkPermission();

    AppModel &model_;
    Permission permission_;
    std::map<Prayer::Value, SettingsForm::Chip *> chips_;
    QComboBox *reminder_ = nullptr;
    QComboBox *friday_ = nullptr;
    SettingsForm::Switch *religiousDays_ = nullptr;
    SettingsForm::Switch *pauseMedia_ = nullptr;
    QWidget *pauseMediaRow_ = nullptr;
    QWidget *deniedRow_ = nullptr;
    QPushButton *openSettings_ = nullptr;
    QComboBox *sound_ = nullptr;
    QLabel *description_ = nullptr;
    QWidget *fileRow_ = nullptr;
    QLabel *fileName_ = nullptr;
    QPushButton *chooseFile_ = nullptr;
    QLabel *importError_ = nullptr;
    QWidget *volumeRow_ = nullptr;
    QSlider *volume_ = nullptr;
    QPushButton *listen_ = nullptr;
    SettingsForm::Switch *quiet_ = nullptr;
    QWidget *quietRows_ = nullptr;
    QTimeEdit *quietStart_ = nullptr;
    QTimeEdit *quietEnd_ = nullptr;
    std::optional<AdhanSound> checkedSound_;
    std::optional<QString> checkedCustomName_;
    bool hasSoundFile_ = false;
};

} // namespace orvel
