// Where the spectrum of each piece of a sound has its middle, and how wide it is.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace kelvane {

// In bins of the spectrum, of which the lowest has number 1; both 0 for a piece of pure silence.
struct SpectralShapes {
    std::vector<double> centroids;
    std::vector<double> spreads;
};

// Of so many overlapping frames, placed and sized as SongOpening says; there are enough samples for all of them.
[[nodiscard]] SpectralShapes spectralShapes(std::span<const float> samples, std::size_t frames);

}  // namespace kelvane
