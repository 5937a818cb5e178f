#include <cmath>
#include <gtest/gtest.h>
#include <numeric>

#include "media_adapters/made_files.h"
#include "media_adapters/sound_samples.h"
#include "platform/linux/media/adapters.h"
#include "support/bytes_file.h"

namespace kelvane {
namespace {

using testing::BytesFile;
using testing::doubled;
using testing::madeBy;
using testing::sampled;
using testing::tone;
using testing::tune;
using testing::wavFile;
using std::chrono_literals::operator""ms;

DecodedSound decodedOpening(const std::string& bytes, std::string_view name,
                            std::chrono::milliseconds longest = 19'817ms)
{
    BytesFile file(bytes);
    return makeFfmpegSoundDecoding()->opening(file, name, longest);
}

double loudness(const std::vector<float>& samples)
{
    double sum = 0;
    for (const float sample : samples)
        sum += static_cast<double>(sample) * sample;
    return samples.empty() ? 0 : std::sqrt(sum / static_cast<double>(samples.size()));
}

TEST(SoundDecoding, GivesTheSamplesOfAPlainWavUnchanged)
{
    const auto samples = tune(1, 21, 11'025);
    const DecodedSound sound = decodedOpening(wavFile(samples), "a.wav");
    ASSERT_EQ(sound.fault.outcome, MediaOutcome::made);
    ASSERT_EQ(sound.samples.size(), 218'482u) << "only the opening";
    for (std::size_t i = 0; i < sound.samples.size(); ++i)
        ASSERT_EQ(sound.samples[i], static_cast<float>(samples[i]) / 32'768.0f) << i;
}

TEST(SoundDecoding, EndsWhereAShortFileEnds)
{
    EXPECT_EQ(decodedOpening(wavFile(tone(440, 2)), "a.wav").samples.size(), 22'050u);
}

TEST(SoundDecoding, MixesAllChannelsIntoOne)
{
    std::vector<std::int16_t> samples;
    for (int i = 0; i < 11'025; ++i)
        samples.insert(samples.end(), {8'000, static_cast<std::int16_t>(-4'000)});
    const DecodedSound sound = decodedOpening(wavFile(samples, {.channels = 2}), "a.wav");
    ASSERT_EQ(sound.samples.size(), 11'025u);
    EXPECT_NEAR(sound.samples[5'000], 2'000 / 32'768.0, 1e-6);
    for (const std::uint16_t channels : std::initializer_list<std::uint16_t>{3, 6, 11}) {
        const std::vector<std::int16_t> many(11'025u * channels, 8'000);
        const DecodedSound mixed = decodedOpening(wavFile(many, {.channels = channels}), "a.wav");
        ASSERT_EQ(mixed.samples.size(), 11'025u) << channels;
        EXPECT_GT(mixed.samples[5'000], 0.1f) << channels;
        EXPECT_LT(mixed.samples[5'000], 0.3f) << channels;
    }
}

TEST(SoundDecoding, BringsEveryHigherRateToTheSameLengthLoudnessAndPlace)
{
    const auto plain = decodedOpening(wavFile(tone(440, 3)), "a.wav").samples;
    for (const std::uint32_t rate : {12'000u, 22'050u, 44'100u, 48'000u, 96'000u, 192'000u}) {
        const auto samples = decodedOpening(wavFile(tone(440, 3, rate), {.rate = rate}), "a.wav").samples;
        EXPECT_NEAR(static_cast<double>(samples.size()), 33'075, 2) << rate;
        EXPECT_NEAR(loudness(samples), loudness(plain), 0.005) << rate;
        for (std::size_t i = 1'000; i < 1'100; ++i)
            EXPECT_NEAR(samples[i], plain[i], 0.01) << rate << " at " << i;
    }
}

TEST(SoundDecoding, RefusesFewerSamplesASecondThanAreCompared)
{
    const DecodedSound sound = decodedOpening(wavFile(tone(440, 30, 8'000), {.rate = 8'000}), "a.wav");
    EXPECT_EQ(sound.fault.outcome, MediaOutcome::lowRate);
    EXPECT_TRUE(sound.samples.empty());
}

TEST(SoundDecoding, ReadsTheUsualFormatsWithTheirStartAtTheSamePlace)
{
    const auto samples = tune(2, 6);
    const std::string wav = wavFile(doubled(samples), {.rate = 44'100, .channels = 2});
    const auto plain = decodedOpening(wav, "a.wav").samples;
    ASSERT_FALSE(plain.empty());
    for (const char* name : {"a.flac", "a.mp3", "a.ogg", "a.opus", "a.m4a", "a.aiff", "a.mka"}) {
        const auto sound = decodedOpening(madeBy("ffmpeg -nostdin -loglevel error -i IN OUT", name, wav), name);
        ASSERT_EQ(sound.fault.outcome, MediaOutcome::made) << name << ": " << sound.fault.detail;
        ASSERT_GT(sound.samples.size(), 60'000u) << name;
        double product = 0;
        double own = 0;
        double other = 0;
        for (std::size_t i = 0; i < 60'000; ++i) {
            product += static_cast<double>(plain[i]) * sound.samples[i];
            own += static_cast<double>(plain[i]) * plain[i];
            other += static_cast<double>(sound.samples[i]) * sound.samples[i];
        }
        EXPECT_GT(product / std::sqrt(own * other), 0.95) << name;
    }
}

}  // namespace
}  // namespace kelvane
