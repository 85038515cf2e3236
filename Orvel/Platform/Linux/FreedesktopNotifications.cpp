#include "FreedesktopNotifications.h"

#include "AppIcon.h"
#include "AppId.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QProcess>
#include <QStandardPaths>
#include <QVariantMap>

#include <algorithm>
#include <array>
#include <utility>

namespace orvel {

namespace {

constexpr QLatin1StringView soundName{"message-new-instant"};

// Servers that announce "body-markup" read the body as a small subset of HTML.
QString escapedForMarkup(QString text)
{
    return text.replace(u'&', QLatin1String("&amp;")).replace(u'<', QLatin1String("&lt;")).replace(u'>', QLatin1String("&gt;"));
}

QVariantMap hints(const NotificationRequest &request)
{
    QVariantMap hints{
        {QStringLiteral("category"), QStringLiteral("x-orvel.prayer")},
        {QStringLiteral("desktop-entry"), QString::fromLatin1(AppId::id)},
        // A byte on the wire: servers ignore an urgency of any other type.
        {QStringLiteral("urgency"), QVariant::fromValue(uchar(1))},
    };
    // No image hint: the application icon already stands beside the text on GNOME and XFCE, and
    // Cinnamon would show the same icon a second time, large, as a picture in the body.
    if (request.defaultSound)
        hints.insert(QStringLiteral("sound-name"), QString(soundName));
    else
        hints.insert(QStringLiteral("suppress-sound"), true);
    return hints;
}

struct SettingsTool {
    const char *desktop; // as named in XDG_CURRENT_DESKTOP
    const char *program;
    const char *argument; // empty: none
};

constexpr std::array<SettingsTool, 7> settingsTools{{
    {"GNOME", "gnome-control-center", "notifications"},
    {"KDE", "systemsettings", "kcm_notifications"},
    {"KDE", "systemsettings5", "kcm_notifications"},
    {"XFCE", "xfce4-notifyd-config", ""},
    {"MATE", "mate-notification-properties", ""},
    {"X-Cinnamon", "cinnamon-settings", "notifications"},
    {"LXQt", "lxqt-config-notificationd", ""},
}};

bool startTool(const SettingsTool &tool)
{
    const QString program = QStandardPaths::findExecutable(QString::fromLatin1(tool.program));
    if (program.isEmpty())
        return false;
    QStringList arguments;
    if (*tool.argument)
        arguments << QString::fromLatin1(tool.argument);
    return QProcess::startDetached(program, arguments);
}

} // namespace

FreedesktopNotifications::FreedesktopNotifications(QDBusConnection connection, QObject *parent)
    : QObject(parent)
    , connection_(std::move(connection))
{
    auto *watcher = new QDBusServiceWatcher(service, connection_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &FreedesktopNotifications::forgetCapabilities);
    connection_.connect(QString(), path, service, QStringLiteral("ActionInvoked"), this,
                        SLOT(onActionInvoked(uint, QString)));
}

void FreedesktopNotifications::onActionInvoked(uint id, const QString &action)
{
    // The server tells every client of every action: only Orvel's own notifications count.
    if (!shownIds_.contains(id))
        return;
    actionInvoked(action);
}

FreedesktopNotifications::~FreedesktopNotifications() = default;

bool FreedesktopNotifications::isAvailable() const
{
    // Both questions are answered by the bus daemon itself, never by a notification server.
    const QDBusConnectionInterface *bus = connection_.isConnected() ? connection_.interface() : nullptr;
    if (!bus)
        return false;
    if (bus->isServiceRegistered(service).value())
        return true;
    return bus->activatableServiceNames().value().contains(service);
}

void FreedesktopNotifications::show(const NotificationRequest &request)
{
    if (capabilities_) {
        send(request);
        return;
    }
    waiting_.push_back(request);
    requestCapabilities();
}

void FreedesktopNotifications::openSettings() const
{
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    for (const SettingsTool &tool : settingsTools) {
        if (desktops.contains(QLatin1String(tool.desktop), Qt::CaseInsensitive) && startTool(tool))
            return;
    }
    // An unknown desktop may still have one of the tools installed.
    for (const SettingsTool &tool : settingsTools) {
        if (startTool(tool))
            return;
    }
}

bool FreedesktopNotifications::canOpenSettings() const
{
    return std::any_of(settingsTools.begin(), settingsTools.end(), [](const SettingsTool &tool) {
        return !QStandardPaths::findExecutable(QString::fromLatin1(tool.program)).isEmpty();
    });
}

void FreedesktopNotifications::requestCapabilities()
{
    if (capabilitiesRequested_)
        return;
    capabilitiesRequested_ = true;
    const QDBusMessage message = QDBusMessage::createMethodCall(service, path, service, QStringLiteral("GetCapabilities"));
    auto *watcher = new QDBusPendingCallWatcher(connection_.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, &FreedesktopNotifications::capabilitiesArrived);
}

void FreedesktopNotifications::capabilitiesArrived(QDBusPendingCallWatcher *call)
{
    call->deleteLater();
    capabilitiesRequested_ = false;
    const QDBusPendingReply<QStringList> reply = *call;
    if (!reply.isError())
        capabilities_ = reply.value();
    // Without an answer the requests still go out: an activatable server may come up for them.
    for (const NotificationRequest &request : std::exchange(waiting_, {}))
        send(request);
}

void FreedesktopNotifications::forgetCapabilities()
{
    // Only what is known goes: a question on its way is still answered (or fails) and then
    // sends what waits. Asking again here would start a server that dies at start (mako on X11)
    // over and over, as each start changes the name's owner.
    capabilities_.reset();
}

void FreedesktopNotifications::soundEnded()
{
    if (!offeringStop_)
        return;
    auto [id, request] = *std::exchange(offeringStop_, std::nullopt);
    // The same notice in place, without the button and without another sound.
    request.offersStop = false;
    request.defaultSound = false;
    send(request, id);
}

void FreedesktopNotifications::send(const NotificationRequest &request, uint replacesId)
{
    const bool markup = capabilities_ && capabilities_->contains(QStringLiteral("body-markup"));
    // When the server is unknown, a sound of our own could double its sound.
    const bool serverIgnoresSound = capabilities_ && !capabilities_->contains(QStringLiteral("sound"));

    QStringList actions;
    if (capabilities_ && capabilities_->contains(QStringLiteral("actions"))) {
        // The body opens the panel; "Sesi durdur" only while Orvel's own sound plays with it.
        actions << QString::fromLatin1(openPanelAction) << QStringLiteral("Paneli aç");
        if (request.offersStop)
            actions << QString::fromLatin1(stopSoundAction) << QStringLiteral("Sesi durdur");
    }
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, service, QStringLiteral("Notify"));
    message << QStringLiteral("Orvel") << replacesId << AppIcon::nameOrPath() << request.title
            << (markup ? escapedForMarkup(request.body) : request.body) << actions << hints(request)
            << int(-1);
    auto *watcher = new QDBusPendingCallWatcher(connection_.asyncCall(message), this);
    const bool playSound = request.defaultSound && serverIgnoresSound;
    const bool withStop = actions.contains(QString::fromLatin1(stopSoundAction));
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, playSound, withStop, request](QDBusPendingCallWatcher *call) {
        call->deleteLater();
        const QDBusPendingReply<uint> reply = *call;
        if (reply.isValid()) {
            constexpr qsizetype remembered = 64;
            shownIds_.insert(reply.value());
            if (withStop)
                offeringStop_ = std::pair{reply.value(), request};
            if (shownIds_.size() > remembered)
                shownIds_.erase(shownIds_.begin());
        }
        // The sound goes with a notification the server took, never alone.
        if (playSound && !call->isError())
            playMessageSound();
    });
}

} // namespace orvel
