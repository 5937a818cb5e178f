// Matching candidates linked to one another, one list a class.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "engine/neighbours.h"

namespace kelvane {

// 5 bytes a candidate. Threads may link disjoint sets of positions at the same time.
class NeighbourLinks {
public:
    explicit NeighbourLinks(std::uint32_t count) : next_(count, Neighbours::none), known_(count, 0) {}

    [[nodiscard]] std::uint32_t next(std::uint32_t position) const { return next_[position]; }
    [[nodiscard]] bool contentsKnown(std::uint32_t position) const { return known_[position] != 0; }

    // Links all of them, in the order given. contentsKnown: they were found to have equal contents.
    void linkAll(std::span<const std::uint32_t> positions, bool contentsKnown);

    // Links those of the same class to one another; a class is a number below classCount.
    void linkClasses(std::span<const std::uint32_t> positions, std::span<const std::uint32_t> classes,
                     std::uint32_t classCount);

private:
    std::vector<std::uint32_t> next_;
    std::vector<std::uint8_t> known_;  // not vector<bool>, whose elements share bytes
};

}  // namespace kelvane
