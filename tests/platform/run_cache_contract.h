// The promises of what is kept from run to run: one suite, run on each kind of cache.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/run_cache.h"

namespace kelvane::testing {

using CachedValue = std::vector<std::byte>;

inline CachedValue cachedText(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

// Of that length, always the same for one seed, and hardly to be compressed.
[[nodiscard]] inline CachedValue cachedNoise(std::size_t length, std::uint32_t seed)
{
    CachedValue value(length);
    std::uint32_t number = seed * 2654435761u + 1;
    for (std::byte& byte : value) {
        number = number * 1664525u + 1013904223u;
        byte = static_cast<std::byte>(number >> 24);
    }
    return value;
}

inline RunCacheKey cacheKey(std::uint64_t index)
{
    return {CachedKind::documentDescriptor, {7, index}, {1000 + index}, {5'000'000}, {6'000'000}, 0xFEDCBA9876543210u};
}

constexpr std::uint64_t roomyCache = 64 * 1024 * 1024;

// One place where caches are kept, empty at first.
class RunCacheWorld {
public:
    virtual ~RunCacheWorld() = default;
    // As another start of the program would have them.
    [[nodiscard]] virtual std::unique_ptr<RunCaches> caches() = 0;

    [[nodiscard]] std::unique_ptr<RunCache> open(std::uint64_t largestBytes = roomyCache)
    {
        auto opened = caches()->open(largestBytes);
        EXPECT_TRUE(opened) << (opened ? "" : opened.error().detail);
        return opened ? std::move(*opened) : nullptr;
    }
};

struct RunCacheKind {
    std::string name;
    std::function<std::unique_ptr<RunCacheWorld>()> make;
};

inline void PrintTo(const RunCacheKind& kind, std::ostream* out)
{
    *out << kind.name;
}

class RunCacheContract : public ::testing::TestWithParam<RunCacheKind> {
protected:
    std::unique_ptr<RunCacheWorld> world_ = GetParam().make();
};

}  // namespace kelvane::testing
