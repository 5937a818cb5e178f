#include "engine/neighbour_links.h"

namespace kelvane {

void NeighbourLinks::linkAll(std::span<const std::uint32_t> positions, bool contentsKnown)
{
    for (std::size_t i = 0; i < positions.size(); ++i) {
        known_[positions[i]] = contentsKnown ? 1 : 0;
        if (i > 0)
            next_[positions[i - 1]] = positions[i];
    }
}

void NeighbourLinks::linkClasses(std::span<const std::uint32_t> positions, std::span<const std::uint32_t> classes,
                                 std::uint32_t classCount)
{
    std::vector<std::uint32_t> last(classCount, Neighbours::none);
    for (std::size_t i = 0; i < positions.size(); ++i) {
        std::uint32_t& previous = last[classes[i]];
        if (previous != Neighbours::none)
            next_[previous] = positions[i];
        previous = positions[i];
        known_[positions[i]] = 1;
    }
}

}  // namespace kelvane
