#include "cleanup/freed_bytes.h"

#include <algorithm>
#include <unordered_map>

#include "cleanup/item_links.h"

namespace kelvane {
namespace {

struct IdentityHash {
    std::size_t operator()(const FileIdentity& identity) const
    {
        constexpr std::uint64_t oddConstant = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
        return static_cast<std::size_t>((identity.index ^ (identity.volume << 32)) * oddConstant);
    }
};

struct Names {
    std::uint32_t listed = 0;   // rows that are names of the file
    std::uint32_t leaving = 0;  // of these, to be taken away
    std::uint32_t gone = 0;     // of these, those counted so far
};

using NamesByFile = std::unordered_map<FileIdentity, Names, IdentityHash>;

bool isName(const ShellItem& item)
{
    return item.inFileSystem() && item.info().identity.known() && !isLinkItself(item);
}

NamesByFile namesOf(const ResultsModel& model, std::span<const CleanupCommand> commands)
{
    NamesByFile names;
    for (const CleanupCommand& command : commands) {
        const ShellItem& item = model.item(command.item).file.item();
        if (isName(item))
            ++names[item.info().identity].leaving;
    }
    model.forEachItem([&](ItemId id) {
        const ShellItem& item = model.item(id).file.item();
        const auto found = isName(item) ? names.find(item.info().identity) : names.end();
        if (found != names.end())
            ++found->second.listed;
    });
    return names;
}

bool isLastName(const ShellItem& item, Names& names, const CleanupFacts& facts)
{
    if (++names.gone < names.leaving || names.leaving < names.listed)
        return false;
    return !facts.linkCount || facts.linkCount(item) <= names.leaving;
}

}  // namespace

std::uint64_t countFreedBytes(const ResultsModel& model, const CleanupFacts& facts, std::span<CleanupCommand> commands)
{
    NamesByFile names = namesOf(model, commands);
    std::uint64_t sum = 0;
    for (CleanupCommand& command : commands) {
        const ShellItem& item = model.item(command.item).file.item();
        command.frees = 0;
        if (isLinkItself(item) || (isName(item) && !isLastName(item, names[item.info().identity], facts)))
            continue;
        command.frees = command.bytes - std::min(command.bytes, facts.sharedBytes ? facts.sharedBytes(item) : 0);
        sum += command.frees;
    }
    return sum;
}

}  // namespace kelvane
