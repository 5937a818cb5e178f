#include "engine/ignored_split.h"

#include <algorithm>

#include "engine/content_compare.h"
#include "engine/same_file.h"

namespace kelvane {

IgnoredSplitter::IgnoredSplitter(const IgnoredPairs* ignored, ShellNamespace& shell, const EngineOptions& options,
                                 const CancelFlag& cancel)
    : ignored_(ignored), shell_(shell), options_(options), cancel_(cancel)
{
}

std::optional<std::vector<IgnoredSplitter::Subgroup>> IgnoredSplitter::split(std::span<const ShellItem* const> members,
                                                                             const Matches& matches)
{
    countSharing(members);
    std::vector<Subgroup> subgroups;
    const bool isWhole = active_.empty();
    for (std::uint32_t index = 0; index < members.size(); ++index) {
        const auto declarations = declarationsOf(*members[index]);
        if (!declarations)
            return std::nullopt;
        const std::uint32_t subgroup = place(*declarations, [&](std::uint32_t number) {
            return isWhole || !matches || number >= subgroups.size() || matches(subgroups[number].back(), index);
        });
        subgroups.resize(std::max<std::size_t>(subgroups.size(), subgroup + 1));
        subgroups[subgroup].push_back(index);
    }
    countParted();
    return subgroups;
}

std::span<const IgnoredPairs::Entry> IgnoredSplitter::entriesOf(const ShellItem& item) const
{
    return hasIdentity(item) ? ignored_->of(item.info().identity) : std::span<const IgnoredPairs::Entry>{};
}

void IgnoredSplitter::countSharing(std::span<const ShellItem* const> members)
{
    active_.clear();
    if (isIdle())
        return;
    for (const ShellItem* const item : members) {
        for (const IgnoredPairs::Entry& entry : entriesOf(*item)) {
            if (entry.file->size == item->info().size)
                ++active_[entry.group].sharing;
        }
    }
    std::erase_if(active_, [](const auto& one) { return one.second.sharing < 2; });
}

// The declarations that hold for this file, as it is now. Nothing when cancelled.
std::optional<std::vector<IgnoredSplitter::Active*>> IgnoredSplitter::declarationsOf(const ShellItem& item)
{
    std::vector<Active*> declarations;
    if (active_.empty())
        return declarations;
    std::optional<Result<ContentDigest>> contents;
    for (const IgnoredPairs::Entry& entry : entriesOf(item)) {
        const auto found = active_.find(entry.group);
        if (found == active_.end() || entry.file->size != item.info().size)
            continue;
        if (!contents)
            contents = digest(item);
        if (!contents->ok())
            break;
        if (contents->value() == entry.file->digest)
            declarations.push_back(&found->second);
    }
    if (contents && !contents->ok() && cancel_.cancelled())
        return std::nullopt;
    for (Active* const declaration : declarations)
        ++declaration->parted;
    return declarations;
}

Result<ContentDigest> IgnoredSplitter::digest(const ShellItem& item) const
{
    auto reader = openForComparing(shell_, item, options_);
    if (!reader)
        return reader.error();
    auto contents = digestOf(**reader, cancel_);
    if (contents && !stillAsSeen(**reader, item))
        return Error{ErrorKind::changed, 0, {}};
    return contents;
}

// The first subgroup that all of the declarations leave free and that admits the file; theirs from now on.
std::uint32_t IgnoredSplitter::place(std::span<Active* const> declarations,
                                     const std::function<bool(std::uint32_t)>& admits)
{
    std::uint32_t subgroup = 0;
    for (const Active* const declaration : declarations)
        subgroup = std::max(subgroup, declaration->firstFree);
    const auto isTaken = [&](const Active* declaration) { return declaration->used.contains(subgroup); };
    while (std::any_of(declarations.begin(), declarations.end(), isTaken) || !admits(subgroup))
        ++subgroup;
    for (Active* const declaration : declarations) {
        declaration->used.insert(subgroup);
        while (declaration->used.erase(declaration->firstFree) > 0)
            ++declaration->firstFree;
    }
    return subgroup;
}

void IgnoredSplitter::countParted()
{
    for (const auto& [number, declaration] : active_)
        partedPairs_ += declaration.parted > 1 ? declaration.parted * (declaration.parted - 1) / 2 : 0;
}

}  // namespace kelvane
