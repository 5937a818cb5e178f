// The byte by byte comparison before something goes.
#include <algorithm>
#include <cstring>
#include <memory>

#include "cleanup/guards.h"

namespace kelvane {
namespace {

constexpr std::size_t chunkBytes = 256 * 1024;  // a cancel is noticed between two of them

struct Chunk {
    std::unique_ptr<std::byte[]> bytes = std::make_unique_for_overwrite<std::byte[]>(chunkBytes);
    std::size_t length = 0;

    [[nodiscard]] Status read(HeldFile& file, std::uint64_t offset)
    {
        const auto got = file.readAt(offset, {bytes.get(), chunkBytes});
        if (!got)
            return got.error();
        length = *got;
        return {};
    }
};

bool areEqual(const Chunk& a, const Chunk& b)
{
    return a.length == b.length && std::memcmp(a.bytes.get(), b.bytes.get(), a.length) == 0;
}

}  // namespace

Result<bool> sameContents(HeldFile& a, HeldFile& b, const CancelFlag& cancel)
{
    Chunk ofA, ofB;
    for (std::uint64_t offset = 0;; offset += chunkBytes) {
        if (cancel.cancelled())
            return Error{ErrorKind::cancelled, 0, {}};
        if (const Status read = ofA.read(a, offset); !read)
            return read.error();
        if (const Status read = ofB.read(b, offset); !read)
            return read.error();
        if (!areEqual(ofA, ofB))
            return false;
        if (ofA.length < chunkBytes)
            return true;
    }
}

}  // namespace kelvane
