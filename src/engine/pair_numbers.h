// Where comparisons that look at random places take their numbers from.
#pragma once

#include <cstdint>

namespace kelvane {

// How the numbers for the probes are drawn.
enum class ProbeNumbers : std::uint8_t {
    shared,   // from the program's generator, one comparison after the other: two files held against each other
    perPair,  // from a generator of each pair's own, seeded from one number of the shared one and both contents, so
              // that the order in which pairs come, and how many threads compare, make no difference
};

}  // namespace kelvane
