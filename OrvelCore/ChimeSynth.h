#pragma once

#include <cstdint>
#include <vector>

namespace orvel {

// The built-in chime: three descending notes, returned as a complete mono 16-bit PCM WAV file.
namespace ChimeSynth {

std::vector<uint8_t> wav(int sampleRate);

} // namespace ChimeSynth

} // namespace orvel
