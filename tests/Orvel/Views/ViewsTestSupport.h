#pragma once

#include "DayTimes.h"
#include "FindChild.h"
#include "TimeZone.h"

#include <QCoreApplication>
#include <QString>

#include <array>
#include <ostream>

inline void PrintTo(const QString &text, std::ostream *out) { *out << '"' << text.toStdString() << '"'; }

namespace orvel::test {

// A barrier for this thread: delivers the events posted to it (a finished load's answer, the
// layout a show or resize asked for), then those they posted in turn.
inline void deliverPosted()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents();
}

// An instant given as Istanbul wall-clock time.
inline Instant at(int64_t year, int64_t month, int64_t day, int hour, int minute, int second = 0)
{
    return DayKey{year, month, day}.start(TimeZone::named("Europe/Istanbul")) + hour * 3600.0 + minute * 60.0 + second;
}

inline DayTimes day(DayKey key, const std::array<std::array<int, 2>, 6> &clock)
{
    DayTimes times{key, {}, std::nullopt};
    for (size_t index = 0; index < clock.size(); ++index)
        times.times[index] = at(key.year, key.month, key.day, clock[index][0], clock[index][1]);
    return times;
}

// Üsküdar on 10 March 2026 (21 Ramazan 1447) and the day after, as the calculator gives them.
inline DayTimes march10() { return day({2026, 3, 10}, {{{5, 53}, {7, 17}, {13, 19}, {16, 35}, {19, 12}, {20, 31}}}); }
inline DayTimes march11() { return day({2026, 3, 11}, {{{5, 51}, {7, 16}, {13, 19}, {16, 35}, {19, 13}, {20, 32}}}); }

} // namespace orvel::test
