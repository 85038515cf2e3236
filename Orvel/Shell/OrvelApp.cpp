#include "OrvelApp.h"

#include "AdhanPlayer.h"
#include "AppModel.h"
#include "GeneralSettingsView.h"
#include "ImsakiyeView.h"
#include "LocationService.h"
#include "Panel.h"
#include "PopoverView.h"
#include "SettingsView.h"
#include "StatusItem.h"
#include "StatusService.h"

#include <QApplication>
#include <QCursor>
#include <QAction>
#include <QMenu>

namespace orvel {

OrvelApp::OrvelApp(std::unique_ptr<AppModel> model, std::unique_ptr<StatusItem> statusItem, QObject *parent)
    : QObject(parent)
    , model_(std::move(model))
    , statusItem_(std::move(statusItem))
    , menu_(std::make_unique<QMenu>())
    , panel_(std::make_unique<Panel>())
{
    windows_.setFactory(QString::fromLatin1(Windows::imsakiye), [this] {
        auto *view = new ImsakiyeView(*model_, ImsakiyeMode::month);
        view->resize(ImsakiyeView::defaultSize);
        return view;
    });
    windows_.setFactory(QString::fromLatin1(Windows::settings),
                        [this] {
                            auto *settings = new SettingsView(*model_, LocationService::create());
                            settings->general()->setPanelShowsLabel(statusItem_->panelShowsLabel());
                            return settings;
                        });

    panel_->setContentFactory([this] {
        return new PopoverView(*model_, [this] { openImsakiye(); }, [this] { openSettings(); },
                               [] { QCoreApplication::quit(); });
    });

    // Shown only while Orvel's own sound plays: one click silences it.
    QAction *stopSound = menu_->addAction(QStringLiteral("Sesi durdur"), &model_->player(), &AdhanPlayer::stop);
    stopSound->setObjectName(QStringLiteral("stopSound"));
    stopSound->setVisible(model_->player().isPlaying());
    connect(&model_->player(), &AdhanPlayer::isPlayingChanged, stopSound, &QAction::setVisible);
    menu_->addAction(QStringLiteral("İmsakiye"), this, &OrvelApp::openImsakiye);
    menu_->addAction(QStringLiteral("Ayarlar…"), this, &OrvelApp::openSettings);
    menu_->addSeparator();
    menu_->addAction(QStringLiteral("Çık"), qApp, &QCoreApplication::quit);
    statusItem_->setMenu(menu_.get());

    connect(statusItem_.get(), &StatusItem::activated, this,
            [this](QPoint position) { panel_->toggle(anchor(position)); });
    connect(statusItem_.get(), &StatusItem::availabilityChanged, this, &OrvelApp::followStatusItem);
    connect(model_.get(), &AppModel::changed, this, [this] { statusItem_->update(*model_); });
    connect(model_.get(), &AppModel::panelRequested, this, &OrvelApp::showPanel);
    // The tray picture follows the desktop's light or dark look.
    qApp->installEventFilter(this);
    statusItem_->update(*model_);
}

OrvelApp::~OrvelApp()
{
    qApp->removeEventFilter(this);
}

void OrvelApp::start()
{
    statusItem_->show();
    if (statusItem_->isAvailable())
        return;
    panel_->setMode(Panel::Mode::window);
    panel_->showAt(anchor(QPoint()));
}

void OrvelApp::followStatusItem(bool available)
{
    // Once the item is in a panel, the window that stood in for it is no longer the way in.
    if (available && panel_->mode() == Panel::Mode::window) {
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
    connect(model_.get(), &AppModel::changed, &service, [this, &service] { service.publish(PublishedStatus::of(*model_)); });
    connect(&service, &StatusService::showPanelRequested, this, &OrvelApp::showPanel);
    connect(&service, &StatusService::openImsakiyeRequested, this, &OrvelApp::openImsakiye);
    connect(&service, &StatusService::openSettingsRequested, this, &OrvelApp::openSettings);
    connect(&service, &StatusService::stopSoundRequested, this, [this] { model_->player().stop(); });
    // The sound's start and end are news for followers too, not only the minute's.
    connect(&model_->player(), &AdhanPlayer::isPlayingChanged, &service,
            [this, &service] { service.publish(PublishedStatus::of(*model_)); });
    service.publish(PublishedStatus::of(*model_));
}

QRect OrvelApp::anchor(QPoint position) const
{
    const QRect item = statusItem_->geometry();
    if (item.isValid() && !item.isEmpty())
        return item;
    return QRect(position.isNull() ? QCursor::pos() : position, QSize(1, 1));
}

bool OrvelApp::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        statusItem_->update(*model_);
    return QObject::eventFilter(watched, event);
}

} // namespace orvel
