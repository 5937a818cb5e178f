#include "props/mp3_finger.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <utility>

#include "base/byte_stream.h"
#include "props/sound_spectrum.h"

namespace kelvane {
namespace {

// Below a ten-thousandth of full scale (-80 dB) there is nothing but the noise of converters and dither.
constexpr float leastPeak = 1e-4f;
// In bins of 1.3 Hz. What one unchanging tone moves by, because of rounding and of how encoders carry it, is well
// below; steady noise moves by ten, music by tens and hundreds.
constexpr double leastMovement = 0.5;
// Fingerprints that are farther apart have nothing in common.
constexpr float farthest = 0.9f;

double meanLoudness(std::span<const float> samples)
{
    double mean = 0;
    double count = 0;
    for (const float sample : samples)
        mean += (std::abs(sample) - mean) / ++count;
    return mean;
}

// Silence in one song is at the same place of the spectrum as silence in any other. Where it fills most frames, songs
// would be alike because of it.
bool isMostlySilent(std::span<const float> samples, std::size_t frames)
{
    std::size_t silent = 0;
    for (std::size_t f = 0; f < frames; ++f) {
        const auto frame = samples.subspan(f * SongOpening::frameStep, SongOpening::frameSize);
        if (std::all_of(frame.begin(), frame.end(), [](float sample) { return std::abs(sample) < leastPeak; }))
            ++silent;
    }
    return silent > frames / 2;
}

// Without what is quieter than the mean in front: no more than the margin, and never so much that too little is left.
std::span<const float> trimmed(std::span<const float> samples, double mean, const SongOpening& opening)
{
    const auto percent = static_cast<std::uint64_t>(opening.decodePercent);
    const std::uint64_t margin = (percent - 100) * samples.size() / percent;
    const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(margin, samples.size() - opening.samples));
    const auto front = samples.first(most);
    const auto loud =
        std::find_if(front.begin(), front.end(), [mean](float sample) { return std::abs(sample) >= mean; });
    return samples.subspan(static_cast<std::size_t>(loud - front.begin()));
}

// Brings the series to mean 0 and deviation 1 (updates by Welford, Technometrics 4, 1962); false where it does not
// move.
bool standardise(std::span<const double> series, std::span<float> standard)
{
    double mean = 0;
    double squares = 0;
    double count = 0;
    for (const double value : series) {
        const double distance = value - mean;
        mean += distance / ++count;
        squares += distance * (value - mean);
    }
    const double deviation = std::sqrt(squares / count);
    if (!(deviation >= leastMovement))
        return false;
    std::transform(series.begin(), series.end(), standard.begin(),
                   [&](double value) { return static_cast<float>((value - mean) / deviation); });
    return true;
}

float lengthOf(std::span<const float> values)
{
    float squares = 0;
    for (const float value : values)
        squares += value * value;
    return std::sqrt(squares);
}

float distance(std::span<const float> a, std::span<const float> b)
{
    float squares = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        squares += (a[i] - b[i]) * (a[i] - b[i]);
    return std::sqrt(squares) / static_cast<float>(a.size());
}

// In several sums side by side, as processors like it. The order of summands changes the sum by less than a part in
// 50,000, since none is negative and there are 178 at most.
float squaresInLanes(std::span<const float> a, std::span<const float> b)
{
    constexpr std::size_t lanes = 4;
    std::array<float, lanes> sums{};
    std::size_t i = 0;
    for (; i + lanes <= a.size(); i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const float apart = a[i + lane] - b[i + lane];
            sums[lane] += apart * apart;
        }
    for (; i < a.size(); ++i)
        sums[0] += (a[i] - b[i]) * (a[i] - b[i]);
    return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

}  // namespace

SongOpening::SongOpening(std::int64_t length)
    : milliseconds(std::clamp<std::int64_t>(length, 5'000, 60'000)),
      marginMs(std::clamp<std::int64_t>(milliseconds * 30 / 100, 5'000, 10'000)),
      decodePercent(marginMs * 100 / milliseconds + 100),
      samples(static_cast<std::uint32_t>(milliseconds * rate / 1000)),
      frames((samples - frameSize) / frameStep + 1)
{
}

MP3Finger::MP3Finger(std::vector<float> series) : series_(std::move(series)), norm_(lengthOf(centroid())) {}

Ref<MP3Finger> MP3Finger::make(std::span<const float> samples, const SongOpening& opening, Lack& lack)
{
    lack = Lack::tooShort;
    if (samples.size() < opening.samples)
        return nullptr;
    lack = Lack::featureless;
    const auto song = trimmed(samples, meanLoudness(samples), opening);
    if (isMostlySilent(song, opening.frames))
        return nullptr;
    const auto [centroids, spreads] = spectralShapes(song, opening.frames);
    std::vector<float> series(2 * std::size_t{opening.frames});
    const auto standard = std::span(series);
    if (!standardise(centroids, standard.first(opening.frames)) || !standardise(spreads, standard.last(opening.frames)))
        return nullptr;
    lack = Lack::none;
    return Ref<MP3Finger>(new MP3Finger(std::move(series)));
}

std::vector<std::byte> MP3Finger::packed() const
{
    ByteWriter bytes;
    for (const float value : series_)
        bytes.number(std::bit_cast<std::uint32_t>(value));
    return bytes.take();
}

Ref<MP3Finger> MP3Finger::unpacked(std::span<const std::byte> bytes, std::size_t frames)
{
    constexpr std::size_t perFrame = 2 * sizeof(float);
    if (frames == 0 || bytes.size() % perFrame != 0 || bytes.size() / perFrame != frames)
        return nullptr;
    ByteReader reader(bytes);
    std::vector<float> series;
    while (const auto bits = reader.number<std::uint32_t>())
        series.push_back(std::bit_cast<float>(*bits));
    if (!std::all_of(series.begin(), series.end(), [](float value) { return std::isfinite(value); }))
        return nullptr;
    return Ref<MP3Finger>(new MP3Finger(std::move(series)));
}

std::int32_t compareFingers(const MP3Finger& a, const MP3Finger& b)
{
    if (a.frames() != b.frames())
        return 0;
    const float apart = (distance(a.centroid(), b.centroid()) + distance(a.spread(), b.spread())) * 0.5f;
    return apart > farthest ? 0 : static_cast<std::int32_t>((1.0f - apart) * 100.0f);
}

bool similarFingers(const MP3Finger& a, const MP3Finger& b, std::int32_t least)
{
    if (least <= 0 || a.frames() != b.frames())
        return least <= 0;
    const auto frames = static_cast<float>(a.frames());
    const float limit = std::min(farthest, 1.0f - static_cast<float>(least) / 100.0f) * 2 * frames;
    const float surelyFar = limit * 1.0001f + 0.0001f;
    const float centroids = squaresInLanes(a.centroid(), b.centroid());
    if (limit < 0 || centroids > surelyFar * surelyFar)
        return false;
    const float apart = std::sqrt(centroids) + std::sqrt(squaresInLanes(a.spread(), b.spread()));
    if (apart > surelyFar)
        return false;
    // So close to the limit, the order of the sums may decide.
    return apart < limit * 0.9999f - 0.0001f || compareFingers(a, b) >= least;
}

}  // namespace kelvane
