#pragma once

// Qt first: moc cannot read <concepts> unless Qt's headers came before it.
#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantMap>

#include "DayTimes.h"
#include "Location.h"
#include "NotificationScheduler.h"

#include <optional>
#include <ostream>
#include <stdexcept>
#include <vector>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace orvel::test {

inline const Location uskudar{"Üsküdar", 41.0225, 29.0153, "Europe/Istanbul"};

inline Instant at(const DayKey &day, int hour, int minute, std::string_view zone = "Europe/Istanbul")
{
    return day.start(TimeZone::named(zone)) + hour * 3600.0 + minute * 60.0;
}

// İmsak 05:12, Güneş 06:40, Öğle 13:05, İkindi 16:50, Akşam 20:10, Yatsı 21:40 in Istanbul.
inline DayTimes day(const DayKey &key, std::optional<int64_t> hijriMonth)
{
    DayTimes times{key, {at(key, 5, 12), at(key, 6, 40), at(key, 13, 5), at(key, 16, 50), at(key, 20, 10), at(key, 21, 40)},
                   std::nullopt};
    if (hijriMonth)
        times.hijri = HijriDate{10, *hijriMonth, 1447};
    return times;
}

// A dbus-daemon of the test's own, with no services but those the test brings.
class PrivateBus {
public:
    // With `activatableNotifications`, a notification service that is only activatable.
    explicit PrivateBus(bool activatableNotifications = false)
    {
        const QString services = folder_.filePath("services");
        QString serviceDir;
        if (activatableNotifications) {
            QDir().mkpath(services);
            write(services + "/org.freedesktop.Notifications.service",
                  "[D-BUS Service]\nName=org.freedesktop.Notifications\nExec=/bin/false\n");
            serviceDir = "<servicedir>" + services + "</servicedir>";
        }
        write(folder_.filePath("bus.conf"),
              "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
              " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
              "<busconfig><type>session</type><listen>unix:dir="
                  + folder_.path() + "</listen><auth>EXTERNAL</auth>" + serviceDir
                  + "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                    "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
                    "</busconfig>\n");
        daemon_.start("dbus-daemon", {"--config-file=" + folder_.filePath("bus.conf"), "--nofork", "--print-address"});
        if (!daemon_.waitForReadyRead(10000))
            throw std::runtime_error("dbus-daemon did not start");
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    }

    ~PrivateBus()
    {
        for (const QString &name : names_)
            QDBusConnection::disconnectFromBus(name);
        daemon_.kill();
        daemon_.waitForFinished();
    }

    QDBusConnection connect()
    {
        static int count = 0;
        const QString name = QStringLiteral("orvel-test-%1").arg(++count);
        names_ << name;
        return QDBusConnection::connectToBus(address_, name);
    }

private:
    static void write(const QString &path, const QString &text)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            throw std::runtime_error("cannot write " + path.toStdString());
    }

    QTemporaryDir folder_;
    QProcess daemon_;
    QString address_;
    QStringList names_;
};

// A notification server that keeps what it was sent.
class RecordingServer : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Received {
        QString appName;
        QString summary;
        QString body;
        QVariantMap hints;
        int expireTimeout = 0;
    };

    explicit RecordingServer(QStringList capabilities)
        : capabilities_(std::move(capabilities))
    {
    }

    bool registerOn(QDBusConnection connection)
    {
        return connection.registerObject("/org/freedesktop/Notifications", this, QDBusConnection::ExportAllSlots)
            && connection.registerService("org.freedesktop.Notifications");
    }

    std::vector<Received> received;
    int capabilityQuestions = 0;

public slots:
    QStringList GetCapabilities()
    {
        ++capabilityQuestions;
        return capabilities_;
    }

    uint Notify(const QString &appName, uint, const QString &, const QString &summary, const QString &body,
                const QStringList &, const QVariantMap &hints, int expireTimeout)
    {
        received.push_back({appName, summary, body, hints, expireTimeout});
        return static_cast<uint>(received.size());
    }

private:
    QStringList capabilities_;
};

} // namespace orvel::test
