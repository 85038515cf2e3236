#include "ChimeSynth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace orvel;

namespace {

uint32_t readLittleEndian(const std::vector<uint8_t> &bytes, size_t offset, int size)
{
    uint32_t value = 0;
    for (int i = size - 1; i >= 0; --i)
        value = value << 8 | bytes[offset + static_cast<size_t>(i)];
    return value;
}

} // namespace

TEST(ChimeSynth, headerNotesAndPeak)
{
    const std::vector<uint8_t> wav = ChimeSynth::wav(44100);
    ASSERT_EQ(wav.size(), 299924u);
    EXPECT_EQ(std::string(wav.begin(), wav.begin() + 4), "RIFF");
    EXPECT_EQ(std::string(wav.begin() + 8, wav.begin() + 16), "WAVEfmt ");
    EXPECT_EQ(std::string(wav.begin() + 36, wav.begin() + 40), "data");
    const struct { size_t offset; int size; uint32_t value; } fields[] = {
        {4, 4, 299916}, {16, 4, 16}, {20, 2, 1}, {22, 2, 1}, {24, 4, 44100}, {28, 4, 88200}, {32, 2, 2}, {34, 2, 16}, {40, 4, 299880}};
    for (const auto &field : fields)
        EXPECT_EQ(readLittleEndian(wav, field.offset, field.size), field.value) << field.offset;

    std::vector<int16_t> pcm;
    for (size_t offset = 44; offset + 1 < wav.size(); offset += 2)
        pcm.push_back(static_cast<int16_t>(readLittleEndian(wav, offset, 2)));
    EXPECT_EQ(pcm.front(), 0);
    EXPECT_NE(pcm.back(), 0); // the three notes ring together until the end
    const auto [low, high] = std::minmax_element(pcm.begin(), pcm.end());
    EXPECT_EQ(std::max(-static_cast<int>(*low), static_cast<int>(*high)), 18021);

    // The first note alone: sign changes per second are about twice its frequency.
    int crossings = 0;
    for (size_t i = 101; i < 24255; ++i)
        crossings += (pcm[i - 1] < 0) != (pcm[i] < 0);
    EXPECT_NEAR(crossings * 44100.0 / (24255 - 100), 2 * 783.99, 15);
}
