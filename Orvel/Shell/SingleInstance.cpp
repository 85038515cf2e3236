#include "SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>

namespace orvel {

namespace {

constexpr int connectTimeoutMs = 500;
constexpr int writeTimeoutMs = 1000;
constexpr int lockTimeoutMs = 3000;

QString userName()
{
    const QString user = qEnvironmentVariable("USER");
    return user.isEmpty() ? qEnvironmentVariable("USERNAME") : user;
}

// Two simultaneous starts must not both decide that they are the first.
QString lockPath(const QString &serverName)
{
    const QString hash = QString::fromLatin1(
        QCryptographicHash::hash(serverName.toUtf8(), QCryptographicHash::Sha1).toHex().left(16));
    return QDir::tempPath() + QStringLiteral("/orvel-") + hash + QStringLiteral(".lock");
}

} // namespace

SingleInstance::SingleInstance(QString serverName, QObject *parent)
    : QObject(parent)
    , serverName_(std::move(serverName))
{
}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::defaultServerName()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isDir() && QFileInfo(runtime).isWritable())
        return runtime + QStringLiteral("/orvel.socket");
    const QByteArray key = (userName() + u'|' + QDir::tempPath() + u'|' + QDir::homePath()).toUtf8();
    return QStringLiteral("orvel-")
        + QString::fromLatin1(QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(16));
}

bool SingleInstance::isPrimary() const
{
    return server_ != nullptr && server_->isListening();
}

SingleInstance::Claim SingleInstance::claim()
{
    if (isPrimary())
        return Claim::primary;

    QLockFile lock(lockPath(serverName_));
    lock.setStaleLockTime(0);
    // Without the lock the check below may race with another start; it is still right nearly always.
    const bool locked = lock.tryLock(lockTimeoutMs);
    Q_UNUSED(locked);

    if (askRunningInstance())
        return Claim::alreadyRunning;

    // Nobody answered: a socket file left by a crashed run would make listen() fail.
    QLocalServer::removeServer(serverName_);
    auto *server = new QLocalServer(this);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(serverName_)) {
        delete server;
        return Claim::failed;
    }
    server_ = server;
    connect(server_, &QLocalServer::newConnection, this, &SingleInstance::acceptConnections);
    return Claim::primary;
}

void SingleInstance::acceptConnections()
{
    while (QLocalSocket *socket = server_->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { readMessage(socket); });
        readMessage(socket);
    }
}

void SingleInstance::readMessage(QLocalSocket *socket)
{
    if (!socket->canReadLine())
        return;
    const QByteArray line = socket->readLine().trimmed();
    socket->disconnectFromServer();
    if (line == showMessage)
        emit showRequested();
}

bool SingleInstance::askRunningInstance() const
{
    QLocalSocket socket;
    socket.connectToServer(serverName_);
    if (!socket.waitForConnected(connectTimeoutMs))
        return false;
    socket.write(QByteArray(showMessage) + '\n');
    socket.waitForBytesWritten(writeTimeoutMs);
    socket.disconnectFromServer();
    if (socket.state() != QLocalSocket::UnconnectedState)
        socket.waitForDisconnected(writeTimeoutMs);
    return true;
}

} // namespace orvel
