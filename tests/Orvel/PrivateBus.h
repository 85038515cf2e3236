#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <stdexcept>

namespace orvel::test {

// A dbus-daemon of the test's own, with no services but those the test brings, or with a
// notification service that is only activatable.
class PrivateBus {
public:
    // With activatable notifications, the bus starts `exec` for the notification server.
    explicit PrivateBus(bool activatableNotifications = false, const QString &exec = QStringLiteral("/bin/false"))
    {
        QString serviceDir;
        if (activatableNotifications) {
            QDir().mkpath(folder_.filePath("services"));
            write("services/org.freedesktop.Notifications.service",
                  "[D-BUS Service]\nName=org.freedesktop.Notifications\nExec=" + exec + "\n");
            serviceDir = "<servicedir>" + folder_.filePath("services") + "</servicedir>";
        }
        write("bus.conf", "<busconfig><type>session</type><listen>unix:dir=" + folder_.path()
                              + "</listen><auth>EXTERNAL</auth>" + serviceDir
                              + "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                                "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
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

    const QString &address() const { return address_; }
    QString filePath(const QString &name) const { return folder_.filePath(name); }

    QDBusConnection connect()
    {
        static int count = 0;
        names_ << QStringLiteral("orvel-test-%1").arg(++count);
        return QDBusConnection::connectToBus(address_, names_.back());
    }

private:
    void write(const QString &name, const QString &text)
    {
        QFile file(folder_.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            throw std::runtime_error("cannot write " + name.toStdString());
    }

    QTemporaryDir folder_;
    QProcess daemon_;
    QString address_;
    QStringList names_;
};

// A barrier: sends `call` from `from` and returns once the answer is in and what came before it
// has been handled here. The bus keeps the order of each sender's messages, so whatever `from`
// sent the callee before, and whatever the callee sent back before answering, is through.
inline bool roundTrip(const QDBusConnection &from, const QDBusMessage &call, int timeoutMs = 5000)
{
    QDBusPendingCallWatcher watcher(from.asyncCall(call));
    bool answered = false;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, [&answered] { answered = true; });
    const bool inTime = QTest::qWaitFor([&answered] { return answered; }, timeoutMs);
    QCoreApplication::sendPostedEvents();
    return inTime && !watcher.isError();
}

} // namespace orvel::test
