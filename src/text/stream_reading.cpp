#include "text/stream_reading.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::uint64_t firstPiece = 1u << 16;

}  // namespace

Result<std::vector<std::byte>> readBeginning(RandomAccessFile& file, std::uint64_t limit)
{
    const std::uint64_t wanted = limit == 0 ? file.size() : std::min(limit, file.size());
    std::vector<std::byte> bytes;
    while (bytes.size() < wanted) {
        // What is there already bounds what is asked for next: a size that the file only claims costs nothing.
        const std::size_t have = bytes.size();
        const std::uint64_t piece = std::min(wanted - have, std::max<std::uint64_t>(firstPiece, have));
        bytes.resize(have + static_cast<std::size_t>(piece));
        const auto count = file.readAt(have, std::span(bytes).subspan(have));
        if (!count)
            return count.error();
        bytes.resize(have + *count);
        if (*count < piece)
            break;
    }
    return bytes;
}

ReadOutcome unreadable(const Error& error)
{
    return {TextOutcome::unreadable, error.detail, {}};
}

}  // namespace kelvane
