#pragma once

#include "Instant.h"

namespace orvel {

// Where "now" comes from. Rules never read the time themselves; the application holds a Clock
// and tests replace it with one they drive.
class Clock {
public:
    virtual ~Clock() = default;
    virtual Instant now() const = 0;
};

class SystemClock final : public Clock {
public:
    Instant now() const override;
};

// A clock that stands still until told otherwise.
class ManualClock final : public Clock {
public:
    explicit ManualClock(Instant start = {})
        : now_(start)
    {
    }
    Instant now() const override { return now_; }
    void set(Instant instant) { now_ = instant; }
    void advance(double seconds) { now_ = now_ + seconds; }

private:
    Instant now_;
};

} // namespace orvel
