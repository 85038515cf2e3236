#pragma once

#include "PanelColors.h"
#include "StatusItem.h"
#include "TrayPicture.h"

#include <QDBusConnection>
#include <QString>

#include <optional>

class QDBusServiceWatcher;
class QFileSystemWatcher;

namespace orvel {

class DBusMenu;
class StatusNotifierItem;

// The status item as a StatusNotifierItem of its own: the square picture, the title text beside
// it (shown by panels that read the Ayatana label), the spoken label as tooltip, and the menu
// exported for the panel to draw.
class DBusStatusItem : public StatusItem {
    Q_OBJECT

public:
    static constexpr auto watcherService = "org.kde.StatusNotifierWatcher";

    explicit DBusStatusItem(QDBusConnection connection, QObject *parent = nullptr);
    ~DBusStatusItem() override;

    // A panel on this bus collects status notifier items.
    static bool watcherPresent(const QDBusConnection &connection);
    // Whether the item offers the face by name as well as in pixels, for a panel that shows the
    // title beside the icon (Ayatana, GNOME) or recolours named icons (GNOME, Plasma).
    static bool offersIconName(const TrayPicture::Face &face, bool panelShowsLabel, bool panelRecolours);

    bool isAvailable() const override;
    void show() override;
    void update(const StatusItemContent &content) override;
    void setMenu(QMenu *menu) override;
    QRect geometry() const override { return {}; }
    bool panelShowsLabel() const override { return panelShowsLabel_; }


private slots:
    void refreshAvailability();

private:
    struct Picture {
        TrayPicture::Face face;
        QColor ink;
        bool operator==(const Picture &) const = default;
    };

    void registerWithWatcher();
    // Which panel holds the watcher, and whether it draws the title.
    void readPanel();
    // Plasma rewrites kdeglobals when its colour scheme changes; the icon follows at once.
    void watchPanelColors();
    void followPanelColors();

    QDBusConnection connection_;
    QString serviceName_;
    StatusNotifierItem *item_;
    DBusMenu *menu_;
    QMenu *contextMenu_ = nullptr;
    QDBusServiceWatcher *watcher_;
    bool shown_ = false;
    bool available_ = false;
    bool panelShowsLabel_ = false;
    // The program holding the watcher: which panel shows the item.
    QString panelProgram_;
    std::optional<Picture> picture_;
    std::optional<PanelColors::Palette> panelColors_;
    QFileSystemWatcher *colorsWatcher_ = nullptr;
    std::optional<StatusItemContent> content_; // the last shown, drawn again when the panel changes
};

} // namespace orvel
