#include "ChimeSynth.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string_view>

namespace orvel::ChimeSynth {

namespace {

struct Note {
    double frequency;
    double onset; // seconds
};

constexpr std::array<Note, 3> notes{{{783.99, 0.0}, {659.25, 0.55}, {523.25, 1.1}}};
constexpr double length = 3.4;    // seconds
constexpr double attack = 0.006;  // seconds, linear ramp from silence
constexpr double outputPeak = 0.55;
constexpr double fullScale = 32767;

double noteSample(double omega, double t)
{
    const double fundamental = std::exp(-2.0 * t) * std::sin(omega * t);
    const double second = 0.28 * std::exp(-3.2 * t) * std::sin(2 * omega * t);
    // Slightly above the third harmonic, which gives the bell its shimmer.
    const double third = 0.1 * std::exp(-4.5 * t) * std::sin(3.01 * omega * t);
    return std::min(t / attack, 1.0) * (fundamental + second + third);
}

std::vector<double> synthesise(double sampleRate)
{
    const auto count = sampleRate > 0 ? static_cast<size_t>(sampleRate * length) : 0;
    std::vector<double> buffer(count, 0.0);
    for (const Note &note : notes) {
        const auto start = static_cast<size_t>(note.onset * sampleRate);
        const double omega = 2 * std::numbers::pi * note.frequency;
        // Every note rings on to the end; the later ones are laid over it.
        for (size_t j = 0; start + j < count; ++j)
            buffer[start + j] += noteSample(omega, static_cast<double>(j) / sampleRate);
    }
    return buffer;
}

void append(std::vector<uint8_t> &out, std::string_view tag)
{
    out.insert(out.end(), tag.begin(), tag.end());
}

void appendLittleEndian(std::vector<uint8_t> &out, uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

} // namespace

std::vector<uint8_t> wav(int sampleRate)
{
    const std::vector<double> buffer = synthesise(sampleRate);
    double peak = 0;
    for (const double value : buffer)
        peak = std::max(peak, std::abs(value));
    if (peak == 0) // empty or silent: nothing to normalise
        peak = 1.0;

    const auto dataSize = static_cast<uint32_t>(2 * buffer.size());
    std::vector<uint8_t> out;
    out.reserve(44 + dataSize);
    append(out, "RIFF");
    appendLittleEndian(out, 36 + dataSize, 4);
    append(out, "WAVE");
    append(out, "fmt ");
    appendLittleEndian(out, 16, 4);
    appendLittleEndian(out, 1, 2); // PCM
    appendLittleEndian(out, 1, 2); // mono
    appendLittleEndian(out, static_cast<uint32_t>(sampleRate), 4);
    appendLittleEndian(out, static_cast<uint32_t>(sampleRate) * 2, 4);
    appendLittleEndian(out, 2, 2);
    appendLittleEndian(out, 16, 2);
    append(out, "data");
    appendLittleEndian(out, dataSize, 4);
    for (const double value : buffer) {
        const double scaled = std::clamp(value / peak * outputPeak, -1.0, 1.0) * fullScale;
        const auto sample = static_cast<int16_t>(scaled); // truncates toward zero
        appendLittleEndian(out, static_cast<uint16_t>(sample), 2);
    }
    return out;
}

} // namespace orvel::ChimeSynth
