#include "StatusService.h"

#include "AdhanPlayer.h"
#include "AppModel.h"
#include "Calendars.h"
#include "DBusStatusService.h"

namespace orvel {

PublishedStatus PublishedStatus::of(const AppModel &model)
{
    const TrayStyle chosen = model.setting(Settings::trayStyle);
    const TrayStyle style = chosen == TrayStyle::iconOnly ? TrayStyle(TrayStyle::nameAndRemaining) : chosen;
    const StatusLine line = model.statusLine(style);
    PublishedStatus status;
    status.title = QString::fromStdString(line.text);
    status.label = QString::fromStdString(line.label);
    status.state = QString::fromUtf8(StatusText::stateName(line.state));
    if (const std::optional<PrayerStatus> now = model.status()) {
        status.nextName = QString::fromUtf8(now->next.displayName(model.nextIsRamadan()));
        status.nextMoment = QString::fromStdString(Calendars::iso8601(now->nextTime, model.zone()));
    }
    status.playing = model.player().isPlaying();
    return status;
}

StatusService *StatusService::createForPlatform(QObject *parent)
{
    return new DBusStatusService(QDBusConnection::sessionBus(), parent);
}

} // namespace orvel
