// Sounds for tests: computed, as WAV files (Microsoft's "Multimedia Programming Interface and Data
// Specifications 1.0"), and as anything else that the ffmpeg command makes of those.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace kelvane::testing {

struct WavForm {
    std::uint32_t rate = 11'025;
    std::uint16_t channels = 1;
    std::uint16_t bits = 16;
    std::uint16_t coding = 1;  // plain numbers
};

// The samples of all channels in turn.
[[nodiscard]] std::string wavFile(std::span<const std::int16_t> samples, const WavForm& form = {});

// One channel: amplitude (-1 to 1) by time in seconds.
[[nodiscard]] std::vector<std::int16_t> sampled(const std::function<double(double)>& amplitude, double seconds,
                                                std::uint32_t rate = 11'025);
[[nodiscard]] std::vector<std::int16_t> tone(double hertz, double seconds, std::uint32_t rate = 11'025);
// Notes of several overtones over a beat, other ones for every seed: something that sounds like music to a descriptor.
[[nodiscard]] std::vector<std::int16_t> tune(unsigned seed, double seconds, std::uint32_t rate = 44'100);
// The same on both channels.
[[nodiscard]] std::vector<std::int16_t> doubled(std::span<const std::int16_t> samples);

}  // namespace kelvane::testing
