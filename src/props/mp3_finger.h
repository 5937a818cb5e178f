// What makes two recordings alike: how the middle and the width of the spectrum of a song's opening move.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/raw_value.h"

namespace kelvane {

// How much of a song is looked at. All from one number, the length of the opening in milliseconds.
struct SongOpening {
    static constexpr std::uint32_t rate = 11'025;      // samples a second
    static constexpr std::uint32_t frameSize = 8'192;  // samples of a frame, a power of two
    static constexpr std::uint32_t frameStep = 7'372;  // from one frame to the next: they overlap by a tenth

    // Brought into 5,000 to 60,000.
    explicit SongOpening(std::int64_t milliseconds);

    std::int64_t milliseconds;
    std::int64_t marginMs;       // what may be skipped in front: 30 %, 5,000 to 10,000
    std::int64_t decodePercent;  // of the opening, what is decoded so that the margin can be skipped
    std::uint32_t samples;       // that are looked at
    std::uint32_t frames;

    [[nodiscard]] std::int64_t decodedMs() const { return milliseconds * decodePercent / 100; }
    // A song that lasts less than this (in 100-nanosecond units) is not compared.
    [[nodiscard]] std::int64_t leastDuration() const { return decodedMs() * 10'000; }
};

// Immutable once made; any number of threads may read it.
class MP3Finger final : public RawObject {
public:
    enum class Lack : std::uint8_t { none, tooShort, featureless };

    // samples: one channel at SongOpening::rate. Quiet samples in front are skipped first, so that a copy with a pause
    // before it is aligned. Null, with the reason in `lack`, where too few samples are left, where most of them are
    // silence, or where the spectrum does not move at all: silence and steady tones are like everything and nothing.
    [[nodiscard]] static Ref<MP3Finger> make(std::span<const float> samples, const SongOpening& opening, Lack& lack);

    [[nodiscard]] std::size_t frames() const { return series_.size() / 2; }
    // The spectral centroid and the spectral spread of each frame, both standardised: mean 0, deviation 1.
    [[nodiscard]] std::span<const float> centroid() const { return std::span(series_).first(frames()); }
    [[nodiscard]] std::span<const float> spread() const { return std::span(series_).last(frames()); }
    // The square root of the sum of the squares of the centroids.
    [[nodiscard]] float norm() const { return norm_; }

    // As bytes for a cache and between processes; null for bytes that are not whole or not those of so many frames.
    [[nodiscard]] std::vector<std::byte> packed() const;
    [[nodiscard]] static Ref<MP3Finger> unpacked(std::span<const std::byte> bytes, std::size_t frames);

private:
    explicit MP3Finger(std::vector<float> series);

    std::vector<float> series_;  // centroids, then spreads
    float norm_ = 0;
};

// 0 to 100: the mean of the distances of both series, each divided by the number of frames, taken from 1. Two
// recordings that have nothing in common still reach about 70, since standardised series are never far apart.
// Both are of one opening.
[[nodiscard]] std::int32_t compareFingers(const MP3Finger& a, const MP3Finger& b);
// Whether compareFingers() gives at least so much, several times faster.
[[nodiscard]] bool similarFingers(const MP3Finger& a, const MP3Finger& b, std::int32_t least);

}  // namespace kelvane
