#pragma once

#include "Instant.h"

#include <algorithm>

namespace orvel {

// Where "now" comes from. Rules never read the time themselves; the application holds a Clock
// and tests replace it with one they drive.
class Clock {
public:
    virtual ~Clock() = default;
    virtual Instant now() const = 0;
    // Seconds of a clock that only ever runs forward and stands still while the machine sleeps:
    // a wall clock that moved further than it did was set, or the machine slept.
    virtual double monotonicSeconds() const = 0;
};

class SystemClock final : public Clock {
public:
    Instant now() const override;
    double monotonicSeconds() const override;
};

// A clock that stands still until told otherwise.
class ManualClock final : public Clock {
public:
    explicit ManualClock(Instant start = {})
        : now_(start)
    {
    }
    Instant now() const override { return now_; }
    double monotonicSeconds() const override { return monotonic_; }
    // Time passes: both clocks move on (set does so by the difference).
    void set(Instant instant) { advance(instant - now_); }
    void advance(double seconds)
    {
        now_ = now_ + seconds;
        monotonic_ += std::max(0.0, seconds);
    }
    // The wall clock alone moves, as after a suspend or a change of the system time.
    void jump(Instant instant) { now_ = instant; }

private:
    Instant now_;
    double monotonic_ = 0;
};

} // namespace orvel
