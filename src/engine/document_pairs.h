// Two documents scored with numbers that belong to the two alone.
#pragma once

#include <cstdint>
#include <optional>

#include "props/sim_doc_descriptor.h"

namespace kelvane {

// Each pair draws its probes from a generator of its own, seeded from one number and both texts: whichever pair comes
// first, and however many threads compare, the score is the same. Any thread may use it.
class DocumentPairs {
public:
    // similarity: the least score of a match.
    DocumentPairs(std::uint32_t number, std::int32_t similarity) : number_(number), similarity_(similarity) {}

    // The score of a match, or nothing.
    [[nodiscard]] std::optional<std::int32_t> match(const SimDocDescriptor& a, const SimDocDescriptor& b) const;

private:
    std::uint32_t number_;
    std::int32_t similarity_;
};

}  // namespace kelvane
