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

private:
    struct Picture {
        TrayPicture::Face face;
        Appearance appearance;
        bool operator==(const Picture &) const = default;
    };

    QSystemTrayIcon *tray_;
    std::optional<Picture> picture_;
};

} // namespace orvel
