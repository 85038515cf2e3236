#pragma once

#include "NotificationBackend.h"

#include <QDBusConnection>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QDBusPendingCallWatcher;

namespace orvel {

// Shows notifications through org.freedesktop.Notifications on a D-Bus connection. Every call
// to the server is asynchronous, so a slow or freshly activated server never holds up the caller.
class FreedesktopNotifications final : public QObject, public NotificationBackend {
    Q_OBJECT

public:
    static constexpr QLatin1StringView service{"org.freedesktop.Notifications"};
    static constexpr QLatin1StringView path{"/org/freedesktop/Notifications"};

    explicit FreedesktopNotifications(QDBusConnection connection, QObject *parent = nullptr);
    ~FreedesktopNotifications() override;

    bool isAvailable() const override;
    void show(const NotificationRequest &request) override;
    void soundEnded() override;
    void openSettings() const override;
    bool canOpenSettings() const override;

private slots:
    void onActionInvoked(uint id, const QString &action);

private:
    void requestCapabilities();
    void capabilitiesArrived(QDBusPendingCallWatcher *call);
    void forgetCapabilities();
    void send(const NotificationRequest &request, uint replacesId = 0);

    QDBusConnection connection_;
    // Asked once per server on this connection; forgotten when the server changes hands.
    std::optional<QStringList> capabilities_;
    bool capabilitiesRequested_ = false;
    // Shown once the capabilities are known.
    std::vector<NotificationRequest> waiting_;
    // The ids the server gave Orvel's notifications, so that others' actions are not taken.
    QSet<uint> shownIds_;
    // The shown notification that offers "Sesi durdur", to withdraw the button when the sound ends.
    std::optional<std::pair<uint, NotificationRequest>> offeringStop_;
};

} // namespace orvel
