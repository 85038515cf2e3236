#pragma once

#include <QObject>
#include <QString>

class QLocalServer;
class QLocalSocket;

namespace orvel {

// Keeps one Orvel per user: the first start listens on a local socket, a later start tells it
// to show itself and leaves.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    static constexpr auto showMessage = "show";

    explicit SingleInstance(QString serverName, QObject *parent = nullptr);
    ~SingleInstance() override;

    // The per-user socket: in the runtime directory when there is one, else a name that holds
    // a hash of the user and the temporary folder.
    static QString defaultServerName();

    enum class Claim {
        primary,        // this process is now the running instance
        alreadyRunning, // another one answered and has been asked to show itself
        failed,         // no socket could be created: run without the guarantee
    };
    Claim claim();
    bool isPrimary() const;
    const QString &serverName() const { return serverName_; }

signals:
    void showRequested();

private:
    bool askRunningInstance() const;
    void acceptConnections();
    void readMessage(QLocalSocket *socket);

    QString serverName_;
    QLocalServer *server_ = nullptr;
};

} // namespace orvel
