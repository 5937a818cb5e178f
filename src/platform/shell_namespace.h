// Port: the tree of shell items, files and virtual folders alike.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/result.h"
#include "platform/file_system.h"
#include "platform/shell_item.h"

namespace kelvane {

// The codes by which walking tells kinds of items apart.
namespace type_code {
inline constexpr std::uint32_t archive = 17;  // archives: small virtual folders (below 18)
inline constexpr std::uint32_t smallVirtualLimit = 18;
inline constexpr std::uint32_t fileSystem = 31;
inline constexpr std::uint32_t portableDevice = 5120;  // phones and cameras: never listed, never read
}  // namespace type_code

// How a folder is listed.
struct ListingOptions {
    Links links = Links::asThemselves;
    bool includeHidden = true;
    bool archivesAsFolders = false;  // archive files are given with Place::archive
};

// How a file of the file system is opened by its path: a link that was followed when it was listed is followed again,
// and so is a root.
[[nodiscard]] inline Links linksOf(const ShellItem& item)
{
    const bool followedLink = item.isReparsePoint() && item.info().kind != FileKind::link;
    return followedLink || !item.parent() ? Links::followed : Links::asThemselves;
}

// All calls are thread-safe.
class ShellNamespace {
public:
    virtual ~ShellNamespace() = default;

    // The item with this parsing name: a path, absolute or relative to the current folder. A path may lead into an
    // archive; the path of an archive file names the file, and the archive as a folder (Place::archive) when it ends
    // with a separator. A root that is itself a link is followed and does not count as a reparse point.
    [[nodiscard]] virtual Result<Ref<ShellItem>> parse(NativeView parsingName) = 0;

    // The children of a folder or an archive, in the system's order. sink returning false ends the listing with
    // success. Files that are neither regular nor folder nor link are not given.
    using ItemSink = std::function<bool(Ref<ShellItem>)>;
    [[nodiscard]] virtual Status enumerate(const Ref<const ShellItem>& folder, const ListingOptions& options,
                                           const ItemSink& sink) = 0;

    [[nodiscard]] virtual Result<std::unique_ptr<ContentReader>> open(const ShellItem& item, ReadPattern pattern) = 0;

    // Times, links and the like, read now; for an entry of an archive what its header says. Links are followed.
    [[nodiscard]] virtual Result<FileDetails> details(const ShellItem& item) = 0;

    // The file system below; for what only files of it have (streams, volumes).
    [[nodiscard]] virtual FileSystem& files() = 0;

    [[nodiscard]] virtual std::uint32_t typeCode(const ShellItem& item) const = 0;
    // The name that a person sees; lone surrogates, shown as U+FFFD, for what is no text.
    [[nodiscard]] virtual std::u16string displayName(const ShellItem& item) const = 0;
    // ".jpg", lower case; empty for a file without an extension; "Folder" types are not told apart.
    [[nodiscard]] virtual std::u16string itemType(const ShellItem& item) const = 0;
    // "JPG file", "Folder", "File".
    [[nodiscard]] virtual std::u16string typeText(const ShellItem& item) const = 0;
};

}  // namespace kelvane
