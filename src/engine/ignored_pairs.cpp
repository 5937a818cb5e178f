#include "engine/ignored_pairs.h"

#include "engine/content_compare.h"
#include "engine/same_file.h"
#include "platform/native_text.h"

namespace kelvane {

IgnoredPairs::IgnoredPairs(std::span<const IgnoredGroup> groups)
{
    for (std::uint32_t index = 0; index < groups.size(); ++index) {
        for (const IgnoredFile& file : groups[index].files) {
            if (!file.identity.known())
                continue;
            std::vector<Entry>& entries = entries_[file.identity];
            if (entries.empty() || entries.back().group != index)
                entries.push_back({index, &file});
        }
    }
}

std::span<const IgnoredPairs::Entry> IgnoredPairs::of(FileIdentity identity) const
{
    const auto found = entries_.find(identity);
    return found != entries_.end() ? std::span<const Entry>(found->second) : std::span<const Entry>{};
}

Result<IgnoredFile> ignoredFileOf(ShellNamespace& shell, const ShellItem& item, const CancelFlag& cancel)
{
    if (item.info().kind != FileKind::regular || item.isFolder())
        return Error{ErrorKind::wrongType, 0, {}};
    if (!hasIdentity(item))
        return Error{ErrorKind::notSupported, 0, {}};
    auto reader = shell.open(item, ReadPattern::sequential);
    if (!reader)
        return reader.error();
    const auto digest = digestOf(**reader, cancel);
    if (!digest)
        return digest.error();
    if (!stillAsSeen(**reader, item))
        return Error{ErrorKind::changed, 0, {}};
    return IgnoredFile{item.info().identity, item.info().size, *digest, bytesFromNative(item.fullName())};
}

}  // namespace kelvane
