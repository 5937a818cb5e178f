#include "cleanup/content_check.h"

#include <algorithm>
#include <cstring>

#include "cleanup/guards.h"

namespace kelvane {
namespace {

constexpr std::size_t chunkBytes = 256 * 1024;

}  // namespace

Result<bool> ContentCheck::areEqual(HeldFile& a, HeldFile& b, FileSize size, const CancelFlag& cancel)
{
    if (!ofA_) {
        ofA_ = std::make_unique_for_overwrite<std::byte[]>(chunkBytes);
        ofB_ = std::make_unique_for_overwrite<std::byte[]>(chunkBytes);
    }
    for (std::uint64_t offset = 0; offset < size.bytes; offset += chunkBytes) {
        if (cancel.cancelled())
            return Error{ErrorKind::cancelled, 0, {}};
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(chunkBytes, size.bytes - offset));
        const auto readA = a.readAt(offset, {ofA_.get(), wanted});
        if (!readA)
            return readA.error();
        const auto readB = b.readAt(offset, {ofB_.get(), wanted});
        if (!readB)
            return readB.error();
        if (*readA != wanted || *readB != wanted || std::memcmp(ofA_.get(), ofB_.get(), wanted) != 0)
            return false;
    }
    return true;
}

Result<bool> sameContents(HeldFile& a, HeldFile& b, const CancelFlag& cancel)
{
    const auto ofA = a.details();
    if (!ofA)
        return ofA.error();
    const auto ofB = b.details();
    if (!ofB)
        return ofB.error();
    if (ofA->size != ofB->size)
        return false;
    return ContentCheck().areEqual(a, b, ofA->size, cancel);
}

}  // namespace kelvane
