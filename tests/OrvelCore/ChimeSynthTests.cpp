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

std::vector<int16_t> samples(const std::vector<uint8_t> &wav)
{
    std::vector<int16_t> out;
    for (size_t offset = 44; offset + 1 < wav.size(); offset += 2)
        out.push_back(static_cast<int16_t>(readLittleEndian(wav, offset, 2)));
    return out;
}

// Sign changes per second over a stretch: about twice the dominant frequency.
double crossingsPerSecond(const std::vector<int16_t> &pcm, size_t from, size_t to)
{
    int crossings = 0;
    for (size_t i = from + 1; i < to; ++i)
        crossings += (pcm[i - 1] < 0) != (pcm[i] < 0);
    return crossings * 44100.0 / static_cast<double>(to - from);
}

} // namespace

TEST(ChimeSynth, waveFile)
{
    const std::vector<uint8_t> wav = ChimeSynth::wav(44100);
    ASSERT_EQ(wav.size(), 299924u);
    EXPECT_EQ(std::string(wav.begin(), wav.begin() + 4), "RIFF");
    EXPECT_EQ(std::string(wav.begin() + 8, wav.begin() + 16), "WAVEfmt ");
    EXPECT_EQ(std::string(wav.begin() + 36, wav.begin() + 40), "data");
    const struct {
        size_t offset;
        int size;
        uint32_t value;
    } fields[] = {{4, 4, 299916}, {16, 4, 16}, {20, 2, 1}, {22, 2, 1}, {24, 4, 44100},
                  {28, 4, 88200}, {32, 2, 2}, {34, 2, 16}, {40, 4, 299880}};
    for (const auto &field : fields)
        EXPECT_EQ(readLittleEndian(wav, field.offset, field.size), field.value) << field.offset;

    EXPECT_EQ(ChimeSynth::wav(44100), wav);
    EXPECT_EQ(ChimeSynth::wav(22050).size(), 44 + 2 * 74970u);
}

TEST(ChimeSynth, notesAndLevel)
{
    const std::vector<int16_t> pcm = samples(ChimeSynth::wav(44100));
    ASSERT_EQ(pcm.size(), 149940u);
    EXPECT_EQ(pcm[0], 0);
    const auto [low, high] = std::minmax_element(pcm.begin(), pcm.end());
    EXPECT_EQ(std::max(-static_cast<int>(*low), static_cast<int>(*high)), 18021);
    EXPECT_GE(*low, -18021);

    // The first note alone, then the three notes ringing together until the end.
    EXPECT_NEAR(crossingsPerSecond(pcm, 100, 24255), 2 * 783.99, 15);
    EXPECT_NE(pcm[149939], 0);
}
