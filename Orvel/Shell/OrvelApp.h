#pragma once

#include "LocationService.h"
#include "Platform.h"
#include "Windows.h"

#include <QObject>
#include <QPoint>
#include <QRect>

#include <functional>
#include <memory>
#include <optional>

class QMenu;

namespace orvel {

class AppModel;
class TrayMenu;
class Panel;
class StatusItem;
class StatusService;

// The running application: the one model, the status item with its menu, the panel that shows
// the panel, and the windows opened from it. There is no main window.
class OrvelApp : public QObject {
    Q_OBJECT

public:
    // Each settings window asks for a location service of its own.
    using LocationServices = std::function<std::unique_ptr<LocationService>()>;

    OrvelApp(std::unique_ptr<AppModel> model, std::unique_ptr<StatusItem> statusItem,
             LocationServices locationServices = [] { return Platform::locationService(); },
             QObject *parent = nullptr);
    ~OrvelApp() override;

    AppModel &model() const { return *model_; }
    StatusItem &statusItem() const { return *statusItem_; }
    Panel &panel() const { return *panel_; }
    Windows &windows() { return windows_; }
    QMenu &menu() const;

    // Puts the item in the panel; where the desktop has none, opens the panel as a window that
    // says how to get the item into the panel.
    void start();
    // That window's line for XDG_CURRENT_DESKTOP, in Turkish.
    static QString noTrayNotice(const QString &currentDesktop);
    // Brings the panel forward (a second start asked for it).
    void showPanel();
    void openImsakiye();
    void openSettings();
    // Keeps the service told of the status and answers its requests.
    void publishTo(StatusService &service);

private:
    void followStatusItem(bool available);
    QRect anchor(QPoint position) const;
    bool eventFilter(QObject *watched, QEvent *event) override;

    std::unique_ptr<AppModel> model_;
    std::unique_ptr<StatusItem> statusItem_;
    std::unique_ptr<TrayMenu> trayMenu_;
    std::unique_ptr<Panel> panel_;
    Windows windows_;
    std::optional<QPoint> lastActivation_;
};

} // namespace orvel
