#include "props/mp3_finger.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>

#include "base/byte_stream.h"
#include "props/plain_finger.h"

namespace kelvane {
namespace {

using testing::plainFinger;
using testing::plainScore;
using testing::plainTransform;
using testing::plainTransformAt;

const SongOpening usual(14'900);
const SongOpening shortest(5'000);

// Notes that change three times a second, over some noise: nothing in it is quieter than the mean for long.
std::vector<float> song(unsigned seed, std::size_t samples)
{
    std::mt19937 random(seed);
    std::vector<float> all(samples);
    double hertz = 0;
    double phase = 0;
    for (std::size_t i = 0; i < samples; ++i) {
        if (i % 3'675 == 0)
            hertz = 80 * std::pow(2.0, static_cast<double>(random() % 60) / 12);
        phase += 2 * std::numbers::pi * hertz / SongOpening::rate;
        const double noise = static_cast<double>(random() % 2'001) / 1'000 - 1;
        all[i] = static_cast<float>(0.5 * std::cos(phase) + 0.2 * std::cos(2.5 * phase) + 0.01 * noise);
    }
    return all;
}

std::vector<float> after(std::size_t count, float quiet, const std::vector<float>& sound)
{
    std::vector<float> all(count, quiet);
    all.insert(all.end(), sound.begin(), sound.end());
    return all;
}

Ref<MP3Finger> made(std::span<const float> samples, const SongOpening& opening)
{
    MP3Finger::Lack lack{};
    return MP3Finger::make(samples, opening, lack);
}

MP3Finger::Lack lackOf(std::span<const float> samples, const SongOpening& opening)
{
    MP3Finger::Lack lack{};
    const auto finger = MP3Finger::make(samples, opening, lack);
    EXPECT_EQ(static_cast<bool>(finger), lack == MP3Finger::Lack::none);
    return lack;
}

std::vector<std::byte> bytesOf(const std::vector<float>& series)
{
    ByteWriter bytes;
    for (const float value : series)
        bytes.number(std::bit_cast<std::uint32_t>(value));
    return bytes.take();
}

Ref<MP3Finger> fingerOf(const std::vector<float>& series)
{
    return MP3Finger::unpacked(bytesOf(series), series.size() / 2);
}

std::vector<float> randomSeries(std::mt19937& random, std::size_t frames)
{
    std::normal_distribution<float> values;
    std::vector<float> series(2 * frames);
    for (float& value : series)
        value = values(random);
    return series;
}

// The other series, moved by so much of the way to a third one.
std::vector<float> moved(const std::vector<float>& from, const std::vector<float>& to, float share)
{
    std::vector<float> series(from.size());
    for (std::size_t i = 0; i < series.size(); ++i)
        series[i] = from[i] + share * (to[i] - from[i]);
    return series;
}

TEST(SongOpening, FollowsFromItsLength)
{
    EXPECT_EQ(usual.marginMs, 5'000);
    EXPECT_EQ(usual.decodePercent, 133);
    EXPECT_EQ(usual.samples, 164'272u);
    EXPECT_EQ(usual.frames, 22u);
    EXPECT_EQ(usual.leastDuration(), 198'170'000);
    EXPECT_EQ(shortest.marginMs, 5'000);
    EXPECT_EQ(shortest.decodePercent, 200);
    EXPECT_EQ(shortest.samples, 55'125u);
    EXPECT_EQ(shortest.frames, 7u);
    EXPECT_EQ(SongOpening(3'000).milliseconds, 5'000);
    EXPECT_EQ(SongOpening(std::numeric_limits<std::int64_t>::min()).milliseconds, 5'000);
    const SongOpening longest(90'000);
    EXPECT_EQ(longest.milliseconds, 60'000);
    EXPECT_EQ(longest.marginMs, 10'000);
    EXPECT_EQ(longest.decodePercent, 116);
    EXPECT_EQ(longest.frames, 89u);
}

TEST(SongOpening, HoldsAllOfItsFrames)
{
    for (std::int64_t length = 5'000; length <= 60'000; length += 37) {
        const SongOpening opening(length);
        EXPECT_LE((opening.frames - 1) * SongOpening::frameStep + SongOpening::frameSize, opening.samples) << length;
        EXPECT_GE(opening.decodedMs() * SongOpening::rate / 1'000, opening.samples) << length;
    }
}

TEST(PlainFinger, TransformsAsTheDefinitionSays)
{
    const auto sound = song(1, 1'024);
    const std::vector<double> values(sound.begin(), sound.end());
    const auto all = plainTransform(values);
    for (const std::size_t k : {0u, 1u, 2u, 77u, 511u})
        EXPECT_LT(std::abs(all[k] - plainTransformAt(values, k)), 1e-9) << k;
}

TEST(MP3Finger, HasTheSeriesOfThePlainFormulas)
{
    auto sound = song(2, usual.samples);
    sound[0] = 0.9f;  // nothing is skipped
    const auto finger = made(sound, usual);
    ASSERT_TRUE(finger);
    const auto plain = plainFinger(sound, usual.frames);
    ASSERT_EQ(finger->frames(), usual.frames);
    double squares = 0;
    for (std::size_t i = 0; i < usual.frames; ++i) {
        EXPECT_NEAR(finger->centroid()[i], plain.centroids[i], 1e-5) << i;
        EXPECT_NEAR(finger->spread()[i], plain.spreads[i], 1e-5) << i;
        squares += plain.centroids[i] * plain.centroids[i];
    }
    EXPECT_NEAR(finger->norm(), std::sqrt(squares), 1e-4);
}

TEST(MP3Finger, CountsASilentFrameAsNoSpectrumAtAll)
{
    auto sound = song(3, shortest.samples);
    sound[0] = 0.9f;
    std::fill(sound.begin() + 3 * SongOpening::frameStep, sound.begin() + 5 * SongOpening::frameStep, 0.0f);
    const auto finger = made(sound, shortest);
    ASSERT_TRUE(finger);
    const auto plain = plainFinger(sound, shortest.frames);
    for (std::size_t i = 0; i < shortest.frames; ++i)
        EXPECT_NEAR(finger->centroid()[i], plain.centroids[i], 1e-5) << i;
}

TEST(MP3Finger, SkipsWhatIsQuietInFront)
{
    const auto sound = song(4, 200'000);
    const auto plain = made(sound, usual);
    ASSERT_TRUE(plain);
    for (const std::size_t pause : {1u, 5'000u, 11'025u, 40'000u}) {
        const auto later = made(after(pause, 0.001f, sound), usual);
        ASSERT_TRUE(later) << pause;
        EXPECT_GE(compareFingers(*plain, *later), 99) << pause;
    }
}

TEST(MP3Finger, SkipsNoMoreThanTheMargin)
{
    const auto sound = song(5, 100'000);
    const auto samples = after(120'000, 0.0f, sound);
    const auto finger = made(samples, usual);
    ASSERT_TRUE(finger);
    const auto plain = plainFinger(std::span(samples).subspan(33 * samples.size() / 133), usual.frames);
    for (std::size_t i = 0; i < usual.frames; ++i)
        EXPECT_NEAR(finger->centroid()[i], plain.centroids[i], 1e-5) << i;
}

TEST(MP3Finger, SkipsOnlyAsMuchAsASoundOfJustTheLengthCanSpare)
{
    const auto samples = after(10'000, 0.0f, song(6, usual.samples - 10'000 + 500));
    const auto finger = made(samples, usual);
    ASSERT_TRUE(finger);
    const auto plain = plainFinger(std::span(samples).subspan(500), usual.frames);
    for (std::size_t i = 0; i < usual.frames; ++i)
        EXPECT_NEAR(finger->centroid()[i], plain.centroids[i], 1e-5) << i;
}

TEST(MP3Finger, NeedsTheWholeOpening)
{
    const auto sound = song(7, usual.samples);
    EXPECT_EQ(lackOf(std::span(sound).first(usual.samples - 1), usual), MP3Finger::Lack::tooShort);
    EXPECT_EQ(lackOf(sound, usual), MP3Finger::Lack::none);
    EXPECT_EQ(lackOf({}, usual), MP3Finger::Lack::tooShort);
}

TEST(MP3Finger, OfSilenceAndSteadyTonesThereIsNone)
{
    std::mt19937 random(8);
    std::vector<float> dither(usual.samples);
    for (float& sample : dither)
        sample = static_cast<float>(static_cast<int>(random() % 3) - 1) / 32'768.0f;
    EXPECT_EQ(lackOf(std::vector<float>(usual.samples, 0.0f), usual), MP3Finger::Lack::featureless);
    EXPECT_EQ(lackOf(std::vector<float>(usual.samples, 0.25f), usual), MP3Finger::Lack::featureless);
    EXPECT_EQ(lackOf(dither, usual), MP3Finger::Lack::featureless);
    for (const double hertz : {50.0, 100.0, 440.0, 3'000.0}) {
        std::vector<float> tone(usual.samples);
        for (std::size_t i = 0; i < tone.size(); ++i)
            tone[i] = static_cast<float>(
                std::round(20'000 * std::sin(2 * std::numbers::pi * hertz * static_cast<double>(i) / 11'025)) / 32'768);
        EXPECT_EQ(lackOf(tone, usual), MP3Finger::Lack::featureless) << hertz;
    }
}

// Else songs that begin with a long pause would be alike because of the pause.
TEST(MP3Finger, OfAnOpeningThatIsMostlySilentThereIsNone)
{
    EXPECT_EQ(lackOf(after(150'000, 0.00005f, song(21, 68'000)), usual), MP3Finger::Lack::featureless);
    EXPECT_EQ(lackOf(after(90'000, 0.00005f, song(21, 128'000)), usual), MP3Finger::Lack::none);
}

TEST(MP3Finger, SurvivesSamplesThatAreNoNumbers)
{
    auto sound = song(9, usual.samples);
    sound[60'000] = std::numeric_limits<float>::quiet_NaN();
    sound[90'000] = std::numeric_limits<float>::infinity();
    sound[120'000] = std::numeric_limits<float>::max();
    const auto finger = made(sound, usual);
    if (finger) {
        EXPECT_TRUE(MP3Finger::unpacked(finger->packed(), usual.frames));
    }
    const std::vector<float> none(usual.samples, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(lackOf(none, usual), MP3Finger::Lack::featureless);
}

TEST(MP3Finger, IsTheSameAfterItsBytes)
{
    const auto finger = made(song(10, usual.samples), usual);
    ASSERT_TRUE(finger);
    const auto bytes = finger->packed();
    const auto again = MP3Finger::unpacked(bytes, usual.frames);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->packed(), bytes);
    EXPECT_EQ(again->norm(), finger->norm());
    EXPECT_EQ(compareFingers(*finger, *again), 100);
}

TEST(MP3Finger, IsNotMadeFromBytesThatAreNone)
{
    const auto bytes = bytesOf(std::vector<float>(44, 0.5f));
    EXPECT_TRUE(MP3Finger::unpacked(bytes, 22));
    EXPECT_FALSE(MP3Finger::unpacked(bytes, 21));
    EXPECT_FALSE(MP3Finger::unpacked(bytes, 23));
    EXPECT_FALSE(MP3Finger::unpacked(std::span(bytes).first(bytes.size() - 1), 22));
    EXPECT_FALSE(MP3Finger::unpacked({}, 0));
    EXPECT_FALSE(MP3Finger::unpacked(bytes, std::numeric_limits<std::size_t>::max()));
    for (const float value : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        std::vector<float> series(44, 0.5f);
        series[43] = value;
        EXPECT_FALSE(MP3Finger::unpacked(bytesOf(series), 22)) << value;
    }
}

TEST(CompareFingers, GivesOneHundredLessTheMeanDistance)
{
    // All of the distance in one value of each series: d = distance / frames.
    const auto at = [](float distance) {
        std::vector<float> series(20, 0.0f);
        series[0] = series[10] = distance;
        return compareFingers(*fingerOf(std::vector<float>(20, 0.0f)), *fingerOf(series));
    };
    EXPECT_EQ(at(0), 100);
    EXPECT_EQ(at(5), 50);
    EXPECT_EQ(at(-5), 50);
    EXPECT_EQ(at(8.99f), 10);
    EXPECT_EQ(at(9.01f), 0);
    EXPECT_EQ(at(1e30f), 0);
    EXPECT_EQ(at(0.05f), 99) << "truncated";
    EXPECT_EQ(compareFingers(*fingerOf(std::vector<float>(20, 0.0f)), *fingerOf(std::vector<float>(22, 0.0f))), 0);
}

TEST(CompareFingers, TellsSongsApart)
{
    const auto first = made(song(11, usual.samples), usual);
    for (unsigned seed = 12; seed < 20; ++seed) {
        const auto other = made(song(seed, usual.samples), usual);
        EXPECT_LT(compareFingers(*first, *other), 85) << seed;
    }
}

// The quick answer may not differ, however close to the limit a pair is.
TEST(SimilarFingers, IsAsTheScoreSays)
{
    std::mt19937 random(20);
    for (const std::size_t frames : {7u, 22u, 89u})
        for (int round = 0; round < 400; ++round) {
            const auto series = randomSeries(random, frames);
            const float share = static_cast<float>(random() % 3'000) / 1'000.0f;
            const auto other = moved(series, randomSeries(random, frames), share);
            const auto a = fingerOf(series);
            const auto b = fingerOf(other);
            const std::int32_t score = compareFingers(*a, *b);
            ASSERT_NEAR(score, std::floor(plainScore(series, other, frames)), 1);
            for (const std::int32_t least : {-5, 0, 1, 10, 60, 90, 100, 101, score - 1, score, score + 1})
                ASSERT_EQ(similarFingers(*a, *b, least), score >= least) << "score " << score << ", least " << least;
        }
}

TEST(SimilarFingers, AgreesAtTheVeryBorder)
{
    const auto zero = fingerOf(std::vector<float>(44, 0.0f));
    for (const std::int32_t least : {1, 10, 50, 70, 80, 90, 99, 100})
        for (int step = -50; step <= 50; ++step) {
            std::vector<float> series(44, 0.0f);
            float distance = static_cast<float>(100 - least) * 0.22f;
            for (int i = 0; i < std::abs(step); ++i)
                distance = std::nextafter(distance, step < 0 ? 0.0f : 100.0f);
            series[0] = series[22] = distance;
            const auto other = fingerOf(series);
            ASSERT_EQ(similarFingers(*zero, *other, least), compareFingers(*zero, *other) >= least)
                << least << " and " << step;
        }
}

}  // namespace
}  // namespace kelvane
