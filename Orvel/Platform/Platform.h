#pragma once

#include <QObject>

#include <memory>

namespace orvel {

class LocationService;
class MediaPlayers;
class NotificationBackend;
class QuitSignals;
class StatusItem;
class StatusService;
class SystemEvents;

// The desktop's services, each behind the small interface beside this header. They are made here
// and nowhere else, once at start-up, and handed to whoever uses them; tests hand in stand-ins.
// Orvel's desktop is Linux's: Linux/LinuxPlatform.cpp makes them on the user's session.
namespace Platform {

// The status item that suits the desktop's panel.
std::unique_ptr<StatusItem> statusItem(QObject *parent = nullptr);
// The desktop's notification service.
std::shared_ptr<NotificationBackend> notifications();
// Sleep, the clock's changes and the zone's.
SystemEvents *systemEvents(QObject *parent);
// The media players the entry sound pauses.
MediaPlayers *mediaPlayers(QObject *parent);
// The system asking Orvel to end.
QuitSignals *quitSignals(QObject *parent);
// The device's position from the desktop's location service (geoclue), named by the online
// geocoders or the gazetteer; each settings window has its own.
std::unique_ptr<LocationService> locationService(QObject *parent = nullptr);
// The status published on the session, and the requests that come back.
StatusService *statusService(QObject *parent);

} // namespace Platform

} // namespace orvel
