// A short stand-in for the contents of a file, to recognise them in a later run.
#pragma once

#include <cstdint>

#include "base/cancel.h"
#include "base/result.h"
#include "platform/file_system.h"

namespace kelvane {

// XXH3 of all bytes, 128 bits (xxHash 0.8). It tells whether a known file was changed; it never decides that two files
// are copies of one another.
struct ContentDigest {
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    friend bool operator==(ContentDigest, ContentDigest) = default;
};

// Reads from the current position to the end, in chunks; `cancelled` when the flag is set between two of them.
[[nodiscard]] Result<ContentDigest> digestOf(ContentReader& reader, const CancelFlag& cancel);

}  // namespace kelvane
