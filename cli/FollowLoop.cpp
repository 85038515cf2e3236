#include "FollowLoop.h"

#include "Clock.h"
#include "OrvelBus.h"
#include "StatusFollower.h"

#include <glib.h>

#include <cmath>
#include <memory>
#include <ostream>

namespace orvel::cli::FollowLoop {

namespace {

struct Loop {
    const Clock &clock;
    std::ostream &out;
    StatusFollower follower;
    GMainLoop *mainLoop = g_main_loop_new(nullptr, FALSE);
    // Nothing is written before the bus has said whether an Orvel runs, so that a status bar
    // does not see the command's own words flash before Orvel's.
    bool ready = false;

    ~Loop() { g_main_loop_unref(mainLoop); }

    void show()
    {
        follower.show(clock.now());
        if (!out)
            g_main_loop_quit(mainLoop);
    }

    // Just after the next whole second of the clock, when a new minute shows at once.
    void armTimer()
    {
        const double now = clock.now().unixSeconds();
        const auto delay = static_cast<unsigned>(std::lround((std::floor(now) + 1 - now) * 1000)) + 5;
        g_timeout_add(delay, &Loop::second, this);
    }

    static gboolean second(gpointer self)
    {
        auto *loop = static_cast<Loop *>(self);
        if (loop->ready && !loop->follower.followsOrvel())
            loop->show();
        loop->armTimer();
        return G_SOURCE_REMOVE;
    }
};

} // namespace

int run(const StatusCommand::Request &request, const Clock &clock, std::ostream &out)
{
    Loop loop{clock, out, StatusFollower(request, request.sources.daySource(clock), out)};
    std::unique_ptr<OrvelBus> bus;
    // Orvel speaks of its own place; a place asked for on the command line is the command's.
    if (!request.placeGiven) {
        bus = std::make_unique<OrvelBus>([&loop](const std::optional<StatusLine> &words) {
            loop.follower.setOrvelWords(words);
            loop.ready = true;
            loop.show();
        });
    } else {
        loop.ready = true;
        loop.show();
    }
    loop.armTimer();
    g_main_loop_run(loop.mainLoop);
    return out ? 0 : 1;
}

} // namespace orvel::cli::FollowLoop
