#include "SingleInstance.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QUuid>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace orvel;

namespace {

QString uniqueServerName()
{
    return QDir::tempPath() + "/orvel-test-" + QUuid::createUuid().toString(QUuid::Id128).left(12) + ".socket";
}

// What a crashed run leaves behind: a socket file nobody listens on.
bool leaveStaleSocket(const QString &path)
{
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    if (fd < 0)
        return false;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray bytes = QFile::encodeName(path);
    qstrncpy(address.sun_path, bytes.constData(), sizeof(address.sun_path));
    const bool bound = ::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof(address)) == 0;
    ::close(fd);
    return bound;
}

} // namespace

TEST(SingleInstance, SecondStartAsksTheFirstToShowItself)
{
    const QString name = uniqueServerName();
    SingleInstance first(name);
    QSignalSpy shown(&first, &SingleInstance::showRequested);
    ASSERT_EQ(first.claim(), SingleInstance::Claim::primary);
    EXPECT_TRUE(first.isPrimary());

    SingleInstance second(name);
    EXPECT_EQ(second.claim(), SingleInstance::Claim::alreadyRunning);
    EXPECT_FALSE(second.isPrimary());
    ASSERT_TRUE(shown.wait(5000));
    EXPECT_EQ(shown.count(), 1);

    SingleInstance third(name);
    EXPECT_EQ(third.claim(), SingleInstance::Claim::alreadyRunning);
    ASSERT_TRUE(shown.wait(5000));
    EXPECT_EQ(shown.count(), 2);
}

TEST(SingleInstance, StaleSocketOfACrashedRunIsTakenOver)
{
    const QString name = uniqueServerName();
    ASSERT_TRUE(leaveStaleSocket(name));
    ASSERT_TRUE(QFileInfo::exists(name));

    SingleInstance first(name);
    QSignalSpy shown(&first, &SingleInstance::showRequested);
    ASSERT_EQ(first.claim(), SingleInstance::Claim::primary);

    SingleInstance second(name);
    EXPECT_EQ(second.claim(), SingleInstance::Claim::alreadyRunning);
    EXPECT_TRUE(shown.wait(5000));
}

TEST(SingleInstance, DefaultNameIsPrivateToTheUser)
{
    const QByteArray previous = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", QDir::tempPath().toUtf8());
    EXPECT_EQ(SingleInstance::defaultServerName(), QDir::tempPath() + "/orvel.socket");
    qunsetenv("XDG_RUNTIME_DIR");
    const QString fallback = SingleInstance::defaultServerName();
    EXPECT_TRUE(fallback.startsWith("orvel-"));
    EXPECT_FALSE(fallback.contains('/'));
    qputenv("XDG_RUNTIME_DIR", previous);
}
