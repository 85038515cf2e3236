#pragma once

#include "StatusBus.h"
#include "StatusService.h"

#include <QDBusConnection>
#include <QString>

namespace orvel {

// The status on the session bus under a name of Orvel's own (StatusBus):
//
//   name       io.github.orvel.Orvel
//   object     /io/github/orvel/Orvel/Status
//   interface  io.github.orvel.Orvel.Status
//     properties (read-only)  Title, Label, State, NextName, NextMoment (strings), Playing (boolean)
//     methods                 ShowPanel(), OpenImsakiye(), OpenSettings(), StopSound()
//
// org.freedesktop.DBus.Properties.PropertiesChanged carries the properties that changed, once per
// change and never for an unchanged minute. NextMoment is ISO 8601 with the place's offset, so
// that a script can read it without knowing the place's zone.
class DBusStatusService : public StatusService {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.github.orvel.Orvel.Status")
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Label READ label)
    Q_PROPERTY(QString State READ state)
    Q_PROPERTY(QString NextName READ nextName)
    Q_PROPERTY(QString NextMoment READ nextMoment)
    Q_PROPERTY(bool Playing READ playing)

public:
    static constexpr auto serviceName = StatusBus::serviceName;
    static constexpr auto objectPath = StatusBus::objectPath;
    static constexpr auto interfaceName = StatusBus::interfaceName;

    explicit DBusStatusService(QDBusConnection connection, QObject *parent = nullptr);
    ~DBusStatusService() override;

    // False when the bus is missing or another program holds the name.
    void publish(const PublishedStatus &status) override;

    QString title() const { return status_.title; }
    QString label() const { return status_.label; }
    QString state() const { return status_.state; }
    QString nextName() const { return status_.nextName; }
    QString nextMoment() const { return status_.nextMoment; }
    bool playing() const { return status_.playing; }

public slots:
    Q_SCRIPTABLE void ShowPanel();
    Q_SCRIPTABLE void OpenImsakiye();
    Q_SCRIPTABLE void OpenSettings();
    // Silences Orvel's own sound at once (a keyboard shortcut, a panel widget, orvel-cli stop).
    Q_SCRIPTABLE void StopSound();

private:
    QDBusConnection connection_;
    PublishedStatus status_;
    bool registered_ = false;
};

} // namespace orvel
