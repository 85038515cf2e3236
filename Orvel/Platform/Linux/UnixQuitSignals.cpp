#include "UnixQuitSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orvel {

namespace {

constexpr std::array<int, 3> quitSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler can reach nothing but plain globals; these belong to the one listening instance.
int signalSockets[2] = {-1, -1};
struct sigaction previousActions[quitSignals.size()];

extern "C" void onQuitSignal(int)
{
    const int savedErrno = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalSockets[0], &byte, 1);
    errno = savedErrno;
}

} // namespace

UnixQuitSignals::UnixQuitSignals(QObject *parent)
    : QuitSignals(parent)
{
    if (signalSockets[0] >= 0)
        return; // another instance already listens
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalSockets) != 0) {
        signalSockets[0] = signalSockets[1] = -1;
        return;
    }
    notifier_ = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &UnixQuitSignals::drain);

    struct sigaction action {};
    action.sa_handler = onQuitSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < quitSignals.size(); ++i)
        ::sigaction(quitSignals[i], &action, &previousActions[i]);
}

UnixQuitSignals::~UnixQuitSignals()
{
    if (!notifier_)
        return;
    for (std::size_t i = 0; i < quitSignals.size(); ++i)
        ::sigaction(quitSignals[i], &previousActions[i], nullptr);
    ::close(signalSockets[0]);
    ::close(signalSockets[1]);
    signalSockets[0] = signalSockets[1] = -1;
}

void UnixQuitSignals::drain()
{
    std::array<char, 64> bytes{};
    bool received = false;
    while (::read(signalSockets[1], bytes.data(), bytes.size()) > 0)
        received = true;
    if (received)
        emit quitRequested();
}

} // namespace orvel
