#include "cleanup/cleanup_message.h"

#include "base/filled_text.h"
#include "base/utf.h"

namespace kelvane {

// removed x bytes / items without the product, which might not fit.
std::uint64_t reclaimedBytes(MarkSum marked, std::uint64_t removed)
{
    if (removed >= marked.items)
        return marked.bytes;
    return marked.bytes / marked.items * removed + marked.bytes % marked.items * removed / marked.items;
}

std::u16string cleanupMessage(MarkSum marked, std::uint64_t removed, bool recycled, const SizeWords& size)
{
    if (removed == 0)
        return {};
    std::string message =
        filledText(TextId::cleanupComplete, {std::to_string(removed), size({reclaimedBytes(marked, removed)})});
    if (removed < marked.items)
        message += filledText(TextId::cleanupNotAll);
    if (recycled)
        message += filledText(TextId::cleanupInTrash);
    return toUtf16(message);
}

}  // namespace kelvane
