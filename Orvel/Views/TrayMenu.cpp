#include "TrayMenu.h"

#include "AppModel.h"
#include "OrvelFormat.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>

namespace orvel {

TrayMenu::TrayMenu(const AppModel &model, Actions actions, QObject *parent)
    : QObject(parent)
    , model_(model)
    , menu_(std::make_unique<QMenu>())
{
    QAction *panel = menu_->addAction(QStringLiteral("Paneli aç"), this, actions.showPanel);
    panel->setObjectName(QStringLiteral("showPanel"));
    menu_->setDefaultAction(panel);
    menu_->addSeparator();
    // A group makes the marked time a radio entry, which hosts draw as a dot beside it.
    auto *group = new QActionGroup(this);
    // At most one: after Yatsı the next time is tomorrow's, and none of today's is marked.
    group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    for (const Prayer::Value prayer : Prayer::all) {
        QAction *time = menu_->addAction(QString());
        time->setObjectName(QStringLiteral("time%1").arg(static_cast<int>(prayer)));
        time->setEnabled(false);
        time->setCheckable(true);
        group->addAction(time);
        times_[prayer] = time;
    }
    menu_->addSeparator();
    menu_->addAction(QStringLiteral("İmsakiye"), this, actions.openImsakiye)->setObjectName(QStringLiteral("imsakiye"));
    menu_->addAction(QStringLiteral("Ayarlar…"), this, actions.openSettings)->setObjectName(QStringLiteral("settings"));
    // Shown only while Orvel's own sound plays: one click silences it.
    stopSound_ = menu_->addAction(QStringLiteral("Sesi durdur"), this, actions.stopSound);
    stopSound_->setObjectName(QStringLiteral("stopSound"));
    stopSound_->setVisible(false);
    menu_->addSeparator();
    menu_->addAction(QStringLiteral("Çık"), this, actions.quit)->setObjectName(QStringLiteral("quit"));
    update();
}

TrayMenu::~TrayMenu() = default;

void TrayMenu::update()
{
    const std::optional<DayTimes> &today = model_.today();
    const std::optional<PrayerStatus> status = model_.status();
    const bool ramadan = model_.isRamadanToday();
    const TimeZone zone = model_.zone();
    for (const Prayer::Value prayer : Prayer::all) {
        QAction *entry = times_[prayer];
        const QString name = QString::fromUtf8(Prayer(prayer).displayName(ramadan));
        const QString time = today ? QString::fromStdString(OrvelFormat::time((*today)[prayer], zone)) : QStringLiteral("--:--");
        // QAction announces a change only when the text or state really differs.
        entry->setText(name + u' ' + time);
        entry->setVisible(today.has_value());
        entry->setChecked(status && !status->nextIsTomorrow && status->next == prayer);
    }
}

void TrayMenu::setPlaying(bool playing)
{
    stopSound_->setVisible(playing);
}

} // namespace orvel
