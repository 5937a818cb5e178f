// Previews drawn by a generator: as different or alike as wanted.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "props/cached_bitmap.h"

namespace kelvane::testing {

struct Colour {
    int red = 0, green = 0, blue = 0;
};

inline Ref<CachedBitmap> drawnPreview(std::uint32_t width, std::uint32_t height,
                                      const std::function<Colour(std::uint32_t x, std::uint32_t y)>& colourAt)
{
    std::vector<std::byte> pixels;
    pixels.reserve(std::size_t{width} * height * 4);
    const auto add = [&](int value) { pixels.push_back(static_cast<std::byte>(std::clamp(value, 0, 255))); };
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x) {
            const Colour colour = colourAt(x, y);
            add(colour.blue);
            add(colour.green);
            add(colour.red);
            add(0);
        }
    return CachedBitmap::make(width, height, std::move(pixels));
}

inline Ref<CachedBitmap> flatPreview(Colour colour, std::uint32_t width = 200, std::uint32_t height = 150)
{
    return drawnPreview(width, height, [&](auto, auto) { return colour; });
}

inline Ref<CachedBitmap> noisyPreview(unsigned seed, std::uint32_t width, std::uint32_t height)
{
    std::mt19937 random(seed);
    const auto any = [&] { return static_cast<int>(random() % 256); };
    return drawnPreview(width, height, [&](auto, auto) {
        const int red = any(), green = any();
        return Colour{red, green, any()};
    });
}

// Something like a photograph: waves of all lengths in each colour, the long ones strongest. The same for the same
// seed, whatever the size; moved and lit as wanted.
class Scene {
public:
    explicit Scene(unsigned seed)
    {
        std::mt19937 random(seed);
        const auto within = [&](double least, double most) {
            return least + (most - least) * static_cast<double>(random()) / 4294967295.0;
        };
        base_ = {within(70, 180), within(70, 180), within(70, 180)};
        for (int i = 0; i < 12; ++i) {
            Wave wave;
            const double length = std::pow(2.0, -i / 2.5);
            wave.x = within(-6, 6) / length;
            wave.y = within(-6, 6) / length;
            wave.phase = within(0, 6.3);
            const double strength = 40 * std::sqrt(length);
            wave.strength = {within(0.4, 1) * strength, within(0.4, 1) * strength, within(0.4, 1) * strength};
            waves_.push_back(wave);
        }
    }

    // x and y from 0 to 1.
    [[nodiscard]] Colour at(double x, double y, double light = 1) const
    {
        Triple sum = base_;
        for (const Wave& wave : waves_) {
            const double height = std::sin(wave.x * x + wave.y * y + wave.phase);
            sum.red += wave.strength.red * height;
            sum.green += wave.strength.green * height;
            sum.blue += wave.strength.blue * height;
        }
        return {static_cast<int>(sum.red * light), static_cast<int>(sum.green * light),
                static_cast<int>(sum.blue * light)};
    }

    // cropped: the part that is missing, half of it at the left and half at the top.
    [[nodiscard]] Ref<CachedBitmap> preview(std::uint32_t width = 200, std::uint32_t height = 150, double light = 1,
                                            double cropped = 0) const
    {
        return drawnPreview(width, height, [&](std::uint32_t x, std::uint32_t y) {
            return at(cropped + (1 - cropped) * x / width, cropped + (1 - cropped) * y / height, light);
        });
    }

private:
    struct Triple {
        double red, green, blue;
    };
    struct Wave {
        double x, y, phase;
        Triple strength;
    };

    Triple base_{};
    std::vector<Wave> waves_;
};

}  // namespace kelvane::testing
