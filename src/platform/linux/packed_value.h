// A value of the cache between runs as it lies in the file: compressed, and tied to its key by a digest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/run_cache.h"

namespace kelvane::linux_os {

// A longer one is not kept; a length that a file claims is not believed beyond it.
inline constexpr std::size_t largestCachedValue = 16 * 1024 * 1024;

struct PackedValue {
    std::vector<std::byte> bytes;
    std::uint64_t length = 0;  // of the value
    std::uint32_t digest = 0;  // CRC-32 of the key, the length and the bytes
};

// `value` is no longer than the largest one.
[[nodiscard]] PackedValue packValue(const RunCacheKey& key, std::span<const std::byte> value);

// Nothing when anything of it is not as it was packed.
[[nodiscard]] std::optional<std::vector<std::byte>> unpackValue(const RunCacheKey& key, const PackedValue& packed);

}  // namespace kelvane::linux_os
