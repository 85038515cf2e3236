#include "TrayStatusItem.h"

#include "StatusText.h"

#include <QSystemTrayIcon>

namespace orvel {

TrayStatusItem::TrayStatusItem(QObject *parent)
    : StatusItem(parent)
    , tray_(new QSystemTrayIcon(this))
{
    connect(tray_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            emit activated(QPoint());
    });
}

TrayStatusItem::~TrayStatusItem() = default;

bool TrayStatusItem::isAvailable() const
{
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayStatusItem::show()
{
    tray_->show();
}

void TrayStatusItem::update(const StatusItemContent &content)
{
    const StatusLine &line = content.line;
    const Picture picture{TrayPicture::face(content, panelShowsLabel()), Colors::current()};
    if (picture != picture_) {
        tray_->setIcon(TrayPicture::icon(picture.face, picture.appearance));
        picture_ = picture;
    }
    const QString label = QString::fromStdString(line.label);
    if (label != tray_->toolTip())
        tray_->setToolTip(label);
}

void TrayStatusItem::setMenu(QMenu *menu)
{
    tray_->setContextMenu(menu);
}

QRect TrayStatusItem::geometry() const
{
    return tray_->geometry();
}

} // namespace orvel
