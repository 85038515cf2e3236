#pragma once

#include <QObject>

#include <array>
#include <functional>
#include <memory>

class QAction;
class QMenu;

namespace orvel {

class AppModel;

// The status item's menu, for hosts where a click opens it (GNOME's AppIndicator, Ayatana) as
// much as for a right click: the panel first, the day's six times (the next one marked), then the
// windows, the sound while it plays, and quitting.
class TrayMenu : public QObject {
    Q_OBJECT

public:
    struct Actions {
        std::function<void()> showPanel;
        std::function<void()> openImsakiye;
        std::function<void()> openSettings;
        std::function<void()> stopSound;
        std::function<void()> quit;
    };

    TrayMenu(const AppModel &model, Actions actions, QObject *parent = nullptr);
    ~TrayMenu() override;

    QMenu *menu() const { return menu_.get(); }
    // Follows the model's day, minute and Ramadan; touches only entries whose text changed.
    void update();
    void setPlaying(bool playing);

private:
    const AppModel &model_;
    std::unique_ptr<QMenu> menu_;
    std::array<QAction *, 6> times_{};
    QAction *stopSound_ = nullptr;
};

} // namespace orvel
