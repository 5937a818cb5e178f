// Fingerprints and previews without any sound or picture.
#pragma once

#include <cmath>
#include <vector>

#include "props/cached_bitmap.h"
#include "props/mp3_finger.h"

namespace kelvane::testing {

inline Ref<MP3Finger> sampleFinger(const SongOpening& opening)
{
    std::vector<float> samples(opening.samples + opening.frameStep);
    float level = 0.5F;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto pitch = static_cast<float>(1 + i / 4'000 * 7 % 13);
        samples[i] = level * std::sin(0.05F * pitch * static_cast<float>(i % 4'000));
        level = i % 3 == 0 ? 0.4F : 0.5F;
    }
    MP3Finger::Lack lack{};
    return MP3Finger::make(samples, opening, lack);
}

inline Ref<CachedBitmap> samplePreview(std::uint32_t width = 60, std::uint32_t height = 40, unsigned seed = 1)
{
    std::vector<std::byte> pixels(std::size_t{4} * width * height);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<std::byte>(i % 4 == 3 ? 0 : i * seed % 251);
    return CachedBitmap::make(width, height, std::move(pixels));
}

}  // namespace kelvane::testing
