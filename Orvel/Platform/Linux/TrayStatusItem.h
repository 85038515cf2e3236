#pragma once

#include "StatusItem.h"
#include "TrayPicture.h"

#include <QString>

#include <optional>

class QSystemTrayIcon;

namespace orvel {

// The status item on Qt's system tray icon: a square picture, the spoken label as its tooltip.
class TrayStatusItem : public StatusItem {
    Q_OBJECT

public:
    explicit TrayStatusItem(QObject *parent = nullptr);
    ~TrayStatusItem() override;

    bool isAvailable() const override;
    void show() override;
    void update(const StatusItemContent &content) override;
    void setMenu(QMenu *menu) override;
    QRect geometry() const override;

    // How often the picture was replaced (it is replaced only when it changes).
    int redrawCount() const { return redrawCount_; }
    QString toolTip() const;

private:
    struct Picture {
        TrayPicture::Face face;
        Appearance appearance;
        bool operator==(const Picture &) const = default;
    };

    QSystemTrayIcon *tray_;
    std::optional<Picture> picture_;
    int redrawCount_ = 0;
};

} // namespace orvel
