#include "Kerahat.h"
#include "TimeZone.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace orvel;

namespace {

const TimeZone istanbul = TimeZone::named("Europe/Istanbul");
const DayKey day{2025, 6, 21};

Instant at(int hour, int minute)
{
    return day.start(istanbul) + hour * 3600 + minute * 60;
}

const DayTimes times{day, {at(3, 21), at(5, 25), at(13, 11), at(17, 12), at(20, 47), at(22, 33)}, std::nullopt};

} // namespace

TEST(Kerahat, intervalsOfADay)
{
    const std::vector<KerahatInterval> expected{
        {KerahatKind::sunrise, at(5, 25), at(6, 10)},
        {KerahatKind::istiva, at(13, 1), at(13, 11)},
        {KerahatKind::sunset, at(20, 2), at(20, 47)},
    };
    EXPECT_EQ(Kerahat::intervals(times, 45, 10), expected);

    // Zero minutes: empty intervals that contain nothing, not even their own start.
    const auto empty = Kerahat::intervals(times, 0, 10);
    EXPECT_EQ(empty[2].start, empty[2].end);
    EXPECT_EQ(Kerahat::active(at(5, 25), empty), std::nullopt);
}

TEST(Kerahat, activeAndNextAtTheEdges)
{
    const auto list = Kerahat::intervals(times, 45, 10);
    EXPECT_EQ(Kerahat::active(at(13, 1), list), list[1]);
    EXPECT_EQ(Kerahat::active(at(13, 11) - 0.001, list), list[1]);
    EXPECT_EQ(Kerahat::active(at(13, 11), list), std::nullopt);
    EXPECT_EQ(Kerahat::next(at(13, 1), list), list[2]);
    EXPECT_EQ(Kerahat::next(at(4, 0), list), list[0]);
    EXPECT_EQ(Kerahat::next(at(20, 2), list), std::nullopt);
    EXPECT_EQ(Kerahat::active(at(12, 0), {}), std::nullopt);
    EXPECT_EQ(Kerahat::next(at(12, 0), {}), std::nullopt);

    // One interval ending where the next begins, and two starting together: list order decides.
    const std::vector<KerahatInterval> touching{
        {KerahatKind::sunset, at(14, 0), at(15, 0)},
        {KerahatKind::istiva, at(13, 0), at(14, 0)},
        {KerahatKind::sunrise, at(14, 0), at(16, 0)},
    };
    EXPECT_EQ(Kerahat::active(at(14, 0), touching), touching[0]);
    EXPECT_EQ(Kerahat::active(at(15, 0), touching), touching[2]);
    EXPECT_EQ(Kerahat::next(at(12, 0), touching), touching[1]);
    EXPECT_EQ(Kerahat::next(at(13, 0), touching), touching[0]);
}

TEST(Kerahat, kindsAndTheirJson)
{
    EXPECT_EQ(KerahatKind(KerahatKind::istiva).title(), "Kerahat (istiva)");
    EXPECT_EQ(nlohmann::json(KerahatKind(KerahatKind::istiva)), "istiva");
    KerahatKind decoded = KerahatKind::sunrise;
    nlohmann::json("sunset").get_to(decoded);
    EXPECT_EQ(decoded, KerahatKind::sunset);
    EXPECT_THROW(nlohmann::json("noon").get_to(decoded), nlohmann::json::exception);
}
