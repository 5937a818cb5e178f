#include "engine/compared_ranges.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::uint64_t sampleBytes = 65'536;

// total x part / parts without overflow, for parts that fit 32 bits.
std::uint64_t share(std::uint64_t total, std::uint64_t part, std::uint64_t parts)
{
    return total / parts * part + total % parts * part / parts;
}

}  // namespace

std::uint64_t ComparedRanges::totalBytes() const
{
    std::uint64_t total = 0;
    for (const ByteRange& range : ranges)
        total += range.length.bytes;
    return total;
}

FileSize hugeLimit(FileSize setting, bool bothInFileSystem) noexcept
{
    return {bothInFileSystem ? setting.bytes : setting.bytes / 2};
}

bool isSampled(FileSize size, FileSize limit) noexcept
{
    return size > limit && size.bytes - limit.bytes > limit.bytes / 10;
}

ComparedRanges comparedRanges(FileSize size, FileSize limit)
{
    ComparedRanges result;
    if (!isSampled(size, limit)) {
        if (size.bytes > 0)
            result.ranges.push_back({{0}, size});
        return result;
    }
    result.sampled = true;
    result.ranges.push_back({{0}, limit});
    const std::uint64_t rest = size.bytes - limit.bytes;
    const std::uint64_t samples = std::max<std::uint64_t>(limit.bytes / 10 / sampleBytes, 1);
    std::uint64_t covered = limit.bytes;
    for (std::uint64_t i = 1; i <= samples; ++i) {
        const std::uint64_t end = limit.bytes + share(rest, i, samples);
        const std::uint64_t length = std::min(sampleBytes, end - covered);
        result.ranges.push_back({{end - length}, {length}});
        covered = end;
    }
    return result;
}

}  // namespace kelvane
