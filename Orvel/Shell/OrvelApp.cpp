#include "OrvelApp.h"

#include "AdhanPlayer.h"
#include "AppModel.h"
#include "GeneralSettingsView.h"
#include "ImsakiyeView.h"
#include "LocationService.h"
#include "Panel.h"
#include "PanelView.h"
#include "SettingsView.h"
#include "StatusItem.h"
#include "StatusService.h"
#include "TrayMenu.h"

#include <QApplication>
#include <QCursor>
#include <QAction>
#include <QMenu>

namespace orvel {

OrvelApp::OrvelApp(std::unique_ptr<AppModel> model, std::unique_ptr<StatusItem> statusItem,
                   LocationServices locationServices, QObject *parent)
    : QObject(parent)
    , model_(std::move(model))
    , statusItem_(std::move(statusItem))
    , panel_(std::make_unique<Panel>())
{
    windows_.setFactory(QString::fromLatin1(Windows::imsakiye), [this] {
        auto *view = new ImsakiyeView(*model_, ImsakiyeMode::month);
        view->resize(ImsakiyeView::defaultSize);
        return view;
    });
    windows_.setFactory(QString::fromLatin1(Windows::settings),
                        [this, locationServices = std::move(locationServices)] {
                            auto *settings = new SettingsView(*model_, locationServices());
                            settings->general()->setPanelShowsLabel(statusItem_->panelShowsLabel());
                            return settings;
                        });

    panel_->setContentFactory([this] {
        return new PanelView(*model_, [this] { openImsakiye(); }, [this] { openSettings(); },
                               [] { QCoreApplication::quit(); });
    });

    trayMenu_ = std::make_unique<TrayMenu>(*model_, TrayMenu::Actions{[this] { showPanel(); }, [this] { openImsakiye(); },
                                                                   [this] { openSettings(); },
                                                                   [this] { model_->player().stop(); },
                                                                   [] { QCoreApplication::quit(); }});
    trayMenu_->setPlaying(model_->player().isPlaying());
    connect(&model_->player(), &AdhanPlayer::isPlayingChanged, trayMenu_.get(), &TrayMenu::setPlaying);
    statusItem_->setMenu(trayMenu_->menu());

    connect(statusItem_.get(), &StatusItem::activated, this, [this](QPoint position) {
        // Hosts that say where the click was say where the item is: the panel opened later from
        // the menu, a notification or a second start opens there too.
        if (!position.isNull())
            lastActivation_ = position;
        panel_->toggle(anchor(position));
    });
    connect(statusItem_.get(), &StatusItem::availabilityChanged, this, &OrvelApp::followStatusItem);
    connect(model_.get(), &AppModel::changed, this, [this] {
        statusItem_->update(model_->statusItemContent());
        trayMenu_->update();
    });
    connect(model_.get(), &AppModel::panelRequested, this, &OrvelApp::showPanel);
    // The tray picture follows the desktop's light or dark look.
    qApp->installEventFilter(this);
    statusItem_->update(model_->statusItemContent());
}

OrvelApp::~OrvelApp()
{
    qApp->removeEventFilter(this);
}

QMenu &OrvelApp::menu() const
{
    return *trayMenu_->menu();
}

void OrvelApp::start()
{
    statusItem_->show();
    if (statusItem_->isAvailable())
        return;
    panel_->setMode(Panel::Mode::window);
    panel_->setNotice(noTrayNotice(qEnvironmentVariable("XDG_CURRENT_DESKTOP")));
    panel_->showAt(anchor(QPoint()));
}

QString OrvelApp::noTrayNotice(const QString &currentDesktop)
{
    // GNOME shows status items only through an extension that Ubuntu enables and Debian does not.
    for (const QString &desktop : currentDesktop.split(u':', Qt::SkipEmptyParts)) {
        if (desktop.compare(QStringLiteral("GNOME"), Qt::CaseInsensitive) == 0)
            return QStringLiteral(
                "Orvel'i üst çubukta görmek için GNOME'un “AppIndicator and KStatusNotifierItem Support” "
                "uzantısı gerekir: gnome-shell-extension-appindicator paketini kurun, “Uzantılar” uygulamasında "
                "açın (ya da: gnome-extensions enable ubuntu-appindicators@ubuntu.com), sonra oturumu kapatıp "
                "yeniden açın.");
    }
    return QStringLiteral("Masaüstünüzde sistem tepsisi bulunamadı. Orvel'in simgesi, tepsi eklenince kendiliğinden "
                          "görünür; o zamana dek bu pencere açık kalır.");
}

void OrvelApp::followStatusItem(bool available)
{
    // Once the item is in a panel, the window that stood in for it is no longer the way in.
    if (available && panel_->mode() == Panel::Mode::window) {
        panel_->setNotice(QString());
        panel_->hide();
        panel_->setMode(Panel::Mode::popup);
        return;
    }
    // Without the item only a second start can bring the panel back; it then opens as a window.
    if (!available)
        panel_->setMode(Panel::Mode::window);
}

void OrvelApp::showPanel()
{
    panel_->present(anchor(QPoint()));
}

void OrvelApp::openImsakiye()
{
    windows_.open(QString::fromLatin1(Windows::imsakiye));
}

void OrvelApp::openSettings()
{
    windows_.open(QString::fromLatin1(Windows::settings));
}

void OrvelApp::publishTo(StatusService &service)
{
    connect(model_.get(), &AppModel::changed, &service, [this, &service] { service.publish(model_->publishedStatus()); });
    connect(&service, &StatusService::showPanelRequested, this, &OrvelApp::showPanel);
    connect(&service, &StatusService::openImsakiyeRequested, this, &OrvelApp::openImsakiye);
    connect(&service, &StatusService::openSettingsRequested, this, &OrvelApp::openSettings);
    connect(&service, &StatusService::stopSoundRequested, this, [this] { model_->player().stop(); });
    // The sound's start and end are news for followers too, not only the minute's.
    connect(&model_->player(), &AdhanPlayer::isPlayingChanged, &service,
            [this, &service] { service.publish(model_->publishedStatus()); });
    service.publish(model_->publishedStatus());
}

QRect OrvelApp::anchor(QPoint position) const
{
    const QRect item = statusItem_->geometry();
    if (item.isValid() && !item.isEmpty())
        return item;
    if (!position.isNull())
        return QRect(position, QSize(1, 1));
    return QRect(lastActivation_ ? *lastActivation_ : QCursor::pos(), QSize(1, 1));
}

bool OrvelApp::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        statusItem_->update(model_->statusItemContent());
    return QObject::eventFilter(watched, event);
}

} // namespace orvel
