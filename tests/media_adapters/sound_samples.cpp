#include "media_adapters/sound_samples.h"

#include <cmath>
#include <numbers>
#include <random>

namespace kelvane::testing {
namespace {

void put(std::string& bytes, std::uint32_t value, int count)
{
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<char>(value >> 8 * i & 0xFF));
}

}  // namespace

std::string wavFile(std::span<const std::int16_t> samples, const WavForm& form)
{
    const auto size = static_cast<std::uint32_t>(samples.size() * 2);
    const std::uint16_t block = static_cast<std::uint16_t>(form.channels * form.bits / 8);
    std::string bytes = "RIFF";
    put(bytes, 36 + size, 4);
    bytes += "WAVEfmt ";
    put(bytes, 16, 4);
    put(bytes, form.coding, 2);
    put(bytes, form.channels, 2);
    put(bytes, form.rate, 4);
    put(bytes, form.rate * block, 4);
    put(bytes, block, 2);
    put(bytes, form.bits, 2);
    bytes += "data";
    put(bytes, size, 4);
    for (const std::int16_t sample : samples)
        put(bytes, static_cast<std::uint16_t>(sample), 2);
    return bytes;
}

std::vector<std::int16_t> sampled(const std::function<double(double)>& amplitude, double seconds, std::uint32_t rate)
{
    std::vector<std::int16_t> samples(static_cast<std::size_t>(seconds * rate));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(std::lround(amplitude(static_cast<double>(i) / rate) * 32'767));
    return samples;
}

std::vector<std::int16_t> tone(double hertz, double seconds, std::uint32_t rate)
{
    return sampled([=](double time) { return 0.5 * std::sin(2 * std::numbers::pi * hertz * time); }, seconds, rate);
}

std::vector<std::int16_t> tune(unsigned seed, double seconds, std::uint32_t rate)
{
    constexpr double noteSeconds = 0.3;
    struct Note {
        double hertz;
        double dullness;
        double loudness;
    };
    std::mt19937 random(seed);
    std::vector<Note> notes(static_cast<std::size_t>(seconds / noteSeconds) + 1);
    const auto draw = [&random](int count) { return static_cast<double>(random() % static_cast<unsigned>(count)); };
    for (Note& note : notes)
        note = {110 * std::pow(2.0, draw(36) / 12), 0.5 + draw(20) / 10, 0.1 + draw(6) / 10};
    return sampled(
        [&](double time) {
            const Note& note = notes[static_cast<std::size_t>(time / noteSeconds)];
            const double fading = std::exp(-3 * std::fmod(time, noteSeconds));
            double sum = 0;
            for (int overtone = 1; overtone <= 8 && overtone * note.hertz < 5'000; ++overtone)
                sum +=
                    std::sin(2 * std::numbers::pi * note.hertz * overtone * time) / std::pow(overtone, note.dullness);
            return note.loudness * fading * sum / 4;
        },
        seconds, rate);
}

std::vector<std::int16_t> doubled(std::span<const std::int16_t> samples)
{
    std::vector<std::int16_t> both;
    both.reserve(samples.size() * 2);
    for (const std::int16_t sample : samples)
        both.insert(both.end(), {sample, sample});
    return both;
}

}  // namespace kelvane::testing
