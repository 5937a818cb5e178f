#include "engine/root_list.h"

#include <algorithm>
#include <utility>

#include "base/filled_text.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

struct KeptRoot {
    std::string path;   // in comparable form
    std::string given;  // as the person wrote it
    std::size_t position = 0;
};

RootProblem problemOf(const Error& error)
{
    const bool missing = error.kind == ErrorKind::notFound || error.kind == ErrorKind::invalid;
    return missing ? RootProblem::notFound : RootProblem::notReadable;
}

// Shell's sort with Knuth's gaps 1, 4, 13, 40, ... (The Art of Computer Programming 3, 5.2.1).
template <class T, class Less>
void shellSort(std::vector<T>& items, Less less)
{
    std::size_t gap = 1;
    while (gap * 3 + 1 <= items.size())
        gap = gap * 3 + 1;
    for (; gap > 0; gap /= 3) {
        for (std::size_t i = gap; i < items.size(); ++i) {
            for (std::size_t at = i; at >= gap && less(items[at], items[at - gap]); at -= gap)
                std::swap(items[at], items[at - gap]);
        }
    }
}

class RootCleaner {
public:
    RootCleaner(const RootListInput& input, const PathRules& rules, ShellNamespace& shell)
        : input_(input), rules_(rules), shell_(shell)
    {
    }

    RootList run()
    {
        std::size_t position = 0;
        for (const auto& given : rules_.splitRoots(input_.list))
            take(given, position++);
        if (input_.fromContainer && kept_.size() > 1)
            dropComputerRoots();
        shellSort(kept_, [&](const auto& a, const auto& b) { return rules_.compareRoots(a.path, b.path) < 0; });
        dropCovered();
        return finish();
    }

private:
    void take(const std::string& given, std::size_t position)
    {
        const auto item = shell_.parse(nativeFromBytes(given));
        if (!item)
            return drop(given, position, problemOf(item.error()), item.error().detail);
        KeptRoot root{rules_.comparable(withoutDetours(**item)), given, position};
        if (input_.protect && rules_.rootIsProtected(root.path))
            return drop(given, position, RootProblem::isProtected, {});
        if (const auto readable = probe(*item); !readable)
            return drop(given, position, problemOf(readable.error()), readable.error().detail);
        longPaths_ = longPaths_ || rules_.isExtendedLength(root.path);
        kept_.push_back(std::move(root));
    }

    // The root without "..", so that protection and nesting see where it leads. A ".." behind a link leads elsewhere
    // than the words say; then the two paths are not one folder and the written one stays.
    std::string withoutDetours(const ShellItem& item) const
    {
        const std::filesystem::path written = item.path();
        const std::filesystem::path plain = written.lexically_normal();
        if (std::find(written.begin(), written.end(), "..") != written.end()) {
            const auto other = shell_.parse(plain.native());
            const bool same =
                other && item.info().identity.known() && (*other)->info().identity == item.info().identity;
            if (same)
                return bytesFromNative(plain.native());
        }
        return bytesFromNative(written.native());
    }

    // Whether a folder can be listed at all; a file is only opened when its contents are needed.
    Status probe(const Ref<ShellItem>& item) const
    {
        if (item->inFileSystem()) {
            const auto volume = shell_.files().volumeFacts(item->path());
            if (volume && volume->pseudo)
                return Error{ErrorKind::notSupported, 0, filledText(TextId::pseudoFileSystem)};
        }
        return item->isFolder() ? shell_.enumerate(item, {}, [](auto&&) { return false; }) : Status{};
    }

    void drop(const std::string& given, std::size_t position, RootProblem problem, std::string detail)
    {
        dropped_.push_back({position, {given, problem, std::move(detail)}});
    }

    void dropComputerRoots()
    {
        std::erase_if(kept_, [&](const KeptRoot& root) {
            const bool computer = rules_.isComputerRoot(root.path);
            if (computer)
                drop(root.given, root.position, RootProblem::containerRoot, {});
            return computer;
        });
    }

    bool covers(const KeptRoot& earlier, const KeptRoot& later) const
    {
        if (earlier.path == later.path)
            return true;
        return input_.subfolders && rules_.covers(earlier.path, later.path) && walkReaches(earlier.path, later.path);
    }

    // A walk stops at links, and under protection at what is hidden. A root behind such a place was named for that
    // very reason; should the walk get there after all, it still enters each folder once.
    bool walkReaches(const std::string& outer, const std::string& inner) const
    {
        const std::filesystem::path from = nativeFromBytes(outer);
        std::filesystem::path at = nativeFromBytes(inner);
        for (; at != from && at.has_relative_path(); at = at.parent_path()) {
            const auto facts = shell_.files().details(at, Links::asThemselves);
            if (facts && facts->kind == FileKind::link)
                return false;
            if (facts && input_.protect && (facts->attributes & (attribute::hidden | attribute::system)) != 0)
                return false;
        }
        return true;
    }

    void dropCovered()
    {
        std::vector<KeptRoot> apart;
        for (auto& root : kept_) {
            const auto outer = std::find_if(apart.begin(), apart.end(),
                                            [&](const KeptRoot& earlier) { return covers(earlier, root); });
            if (outer == apart.end())
                apart.push_back(std::move(root));
            else
                drop(root.given, root.position, RootProblem::insideOther, outer->given);
        }
        kept_ = std::move(apart);
    }

    RootList finish()
    {
        RootList list;
        for (const auto& root : kept_)
            list.roots.push_back(longPaths_ ? rules_.toExtendedLength(root.path) : root.path);
        std::sort(dropped_.begin(), dropped_.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        for (auto& [position, root] : dropped_)
            list.dropped.push_back(std::move(root));
        list.joined = rules_.joinRoots(list.roots);
        return list;
    }

    const RootListInput& input_;
    const PathRules& rules_;
    ShellNamespace& shell_;
    std::vector<KeptRoot> kept_;
    std::vector<std::pair<std::size_t, DroppedRoot>> dropped_;
    bool longPaths_ = false;
};

}  // namespace

RootList normaliseRoots(const RootListInput& input, const PathRules& rules, ShellNamespace& shell)
{
    return RootCleaner(input, rules, shell).run();
}

}  // namespace kelvane
