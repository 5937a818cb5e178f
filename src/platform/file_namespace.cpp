#include "platform/file_namespace.h"

#include <utility>

#include "base/filled_text.h"
#include "platform/archive_listings.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using Place = ShellItem::Place;
using NativeChar = NativeString::value_type;

bool isSeparator(NativeChar c)
{
    return c == fs::path::preferred_separator || c == NativeChar('/');
}

// Where the first component lies. A path of Windows may have a root and no drive, or a drive and no root ("c:file").
fs::path startOf(const fs::path& given)
{
    if (given.has_root_directory())
        return given.root_path();
    return given.has_root_name() ? fs::absolute(given.root_name()) : fs::current_path();
}

// Absolute, without "." and doubled separators. ".." is taken back only within the current folder, which has no links
// on its way; elsewhere it may lead through a link and stays.
fs::path absolutePath(NativeView parsingName)
{
    const fs::path given{NativeString(parsingName)};
    fs::path full = startOf(given);
    bool canGoUp = !given.has_root_directory();
    for (const fs::path& part : given.relative_path()) {
        if (part.empty() || part == fs::path("."))
            continue;
        canGoUp = canGoUp && part == fs::path("..");
        full = canGoUp ? full.parent_path() : full / part;
    }
    return full;
}

// The path of an entry inside its archive, "" for the archive itself.
NativeString pathInArchive(const ShellItem& item)
{
    if (item.place() != Place::insideArchive)
        return {};
    const NativeString folder = pathInArchive(*item.parent());
    return folder.empty() ? NativeString(item.name()) : folder + NativeChar('/') + NativeString(item.name());
}

// A name begins an extension at its last dot, unless that is its first or last character or what follows holds a
// space: "Mr. Smith" has none.
std::u16string_view extensionOf(std::u16string_view name)
{
    const auto dot = name.rfind(u'.');
    if (dot == std::u16string_view::npos || dot == 0 || dot + 1 == name.size())
        return {};
    const std::u16string_view extension = name.substr(dot);
    return extension.find(u' ') == std::u16string_view::npos ? extension : std::u16string_view();
}

class FileNamespace final : public ShellNamespace {
public:
    FileNamespace(FileSystem& files, ArchiveFolders* archives, const TextFolding& folding)
        : files_(files), archives_(archives), folding_(folding)
    {
        if (archives)
            listings_.emplace(files, *archives);
    }

    Result<Ref<ShellItem>> parse(NativeView parsingName) override;
    Status enumerate(const Ref<const ShellItem>& folder, const ListingOptions& options, const ItemSink& sink) override;
    Result<std::unique_ptr<ContentReader>> open(const ShellItem& item, ReadPattern pattern) override;
    Result<FileDetails> details(const ShellItem& item) override;
    FileSystem& files() override { return files_; }
    std::uint32_t typeCode(const ShellItem& item) const override;
    std::u16string displayName(const ShellItem& item) const override;
    std::u16string itemType(const ShellItem& item) const override;
    std::u16string typeText(const ShellItem& item) const override;

private:
    bool looksLikeArchive(NativeView name) const { return archives_ && archives_->looksLikeArchive(name); }
    Result<Ref<ShellItem>> parseInsideArchive(const fs::path& path, const Error& otherwise);
    Result<Ref<ShellItem>> archiveRoot(const fs::path& path);
    Result<Ref<ShellItem>> descend(const Ref<ShellItem>& archive, const fs::path& inside);
    Status enumerateFolder(const Ref<const ShellItem>& folder, const ListingOptions& options, const ItemSink& sink);
    Status enumerateArchive(const Ref<const ShellItem>& folder, const ItemSink& sink);

    FileSystem& files_;
    ArchiveFolders* archives_;
    const TextFolding& folding_;
    std::optional<ArchiveListings> listings_;
};

Result<Ref<ShellItem>> FileNamespace::parse(NativeView parsingName)
{
    if (parsingName.empty())
        return Error{ErrorKind::invalid, 0, filledText(TextId::emptyName)};
    const fs::path path = absolutePath(parsingName);
    auto details = files_.details(path, Links::followed);
    if (!details)
        return parseInsideArchive(path, details.error());
    if (details->kind == FileKind::other)
        return Error{ErrorKind::wrongType, 0, filledText(TextId::neitherFileNorFolder)};
    if (isSeparator(parsingName.back()) && details->kind == FileKind::regular)
        return archiveRoot(path);
    FileInfo info = static_cast<const FileInfo&>(*details);
    info.attributes &= ~attribute::reparsePoint;
    return ShellItem::make(nullptr, path.native(), info, Place::fileSystem);
}

// Looks for an archive on the way from the end of the path upwards.
Result<Ref<ShellItem>> FileNamespace::parseInsideArchive(const fs::path& path, const Error& otherwise)
{
    if (!archives_ || otherwise.kind != ErrorKind::notFound)
        return otherwise;
    for (fs::path above = path.parent_path(); above.has_relative_path(); above = above.parent_path()) {
        if (!looksLikeArchive(above.filename().native()))
            continue;
        auto archive = archiveRoot(above);
        if (archive)
            return descend(*archive, path.lexically_relative(above));
    }
    return otherwise;
}

Result<Ref<ShellItem>> FileNamespace::archiveRoot(const fs::path& path)
{
    auto details = files_.details(path, Links::followed);
    if (!details)
        return details.error();
    if (details->kind != FileKind::regular || !looksLikeArchive(path.filename().native()))
        return Error{ErrorKind::wrongType, 0, filledText(TextId::notFolder)};
    return ShellItem::make(nullptr, path.native(), *details, Place::archive);
}

Result<Ref<ShellItem>> FileNamespace::descend(const Ref<ShellItem>& archive, const fs::path& inside)
{
    const auto listing = listings_->of(archive->path());
    if (!listing)
        return listing.error();
    Ref<ShellItem> item = archive;
    for (const fs::path& part : inside) {
        const ArchiveListing::Child* child = (*listing)->find(pathInArchive(*item), part.native());
        if (!child)
            return Error{ErrorKind::notFound, 0, filledText(TextId::notInArchive)};
        item = ShellItem::make(item, child->name, child->info, Place::insideArchive);
    }
    return item;
}

Status FileNamespace::enumerate(const Ref<const ShellItem>& folder, const ListingOptions& options, const ItemSink& sink)
{
    if (folder->place() != Place::fileSystem)
        return enumerateArchive(folder, sink);
    return enumerateFolder(folder, options, sink);
}

Status FileNamespace::enumerateFolder(const Ref<const ShellItem>& folder, const ListingOptions& options,
                                      const ItemSink& sink)
{
    return files_.enumerate(folder->path(), options.links, [&](const DirectoryEntry& entry) {
        const FileInfo& info = entry.info;
        const bool hidden = (info.attributes & (attribute::hidden | attribute::system)) != 0;
        if (info.kind == FileKind::other || (hidden && !options.includeHidden))
            return true;
        const bool enter = options.archivesAsFolders && info.kind == FileKind::regular && looksLikeArchive(entry.name);
        return sink(ShellItem::make(folder, entry.name, info, enter ? Place::archive : Place::fileSystem));
    });
}

Status FileNamespace::enumerateArchive(const Ref<const ShellItem>& folder, const ItemSink& sink)
{
    const bool isTop = folder->place() == Place::archive;
    const ShellItem* archive = isTop ? folder.get() : folder->enclosingArchive();
    if (!archive || !listings_)
        return Error{ErrorKind::notSupported, 0, filledText(TextId::archivesNotRead)};
    const auto listing = listings_->of(archive->path());
    if (!listing)
        return listing.error();
    const auto* children = (*listing)->children(pathInArchive(*folder));
    if (!children)
        return Error{ErrorKind::notFound, 0, filledText(TextId::notInArchive)};
    for (const ArchiveListing::Child& child : *children) {
        if (!sink(ShellItem::make(folder, child.name, child.info, Place::insideArchive)))
            return {};
    }
    // Damage is told once, for the archive and not for every folder in it.
    if (isTop && (*listing)->fault())
        return *(*listing)->fault();
    return {};
}

// A root is opened through its link, since whoever named it meant what it leads to.
Result<std::unique_ptr<ContentReader>> FileNamespace::open(const ShellItem& item, ReadPattern pattern)
{
    if (const ShellItem* archive = item.enclosingArchive()) {
        if (!archives_ || item.isFolder())
            return Error{ErrorKind::wrongType, 0, filledText(TextId::notFile)};
        return archives_->open(archive->path(), item.info().identity.index);
    }
    return files_.openForReading(item.path(), pattern, linksOf(item));
}

Result<FileDetails> FileNamespace::details(const ShellItem& item)
{
    if (item.inFileSystem())
        return files_.details(item.path(), Links::followed);
    FileDetails details;
    static_cast<FileInfo&>(details) = item.info();
    return details;
}

std::uint32_t FileNamespace::typeCode(const ShellItem& item) const
{
    return item.place() == Place::fileSystem ? type_code::fileSystem : type_code::archive;
}

std::u16string FileNamespace::displayName(const ShellItem& item) const
{
    if (item.parent())
        return displayFromNative(item.name());
    const fs::path full = item.path();
    return displayFromNative(full.has_filename() ? full.filename().native() : full.native());
}

std::u16string FileNamespace::itemType(const ShellItem& item) const
{
    if (item.info().kind == FileKind::folder)
        return {};
    return folding_.lower(extensionOf(displayName(item)));
}

std::u16string FileNamespace::typeText(const ShellItem& item) const
{
    if (item.info().kind == FileKind::folder)
        return u"Folder";
    const std::u16string name = displayName(item);
    std::u16string_view extension = extensionOf(name);
    if (extension.empty())
        return u"File";
    std::u16string type(extension.substr(1));
    for (char16_t& unit : type)
        unit = unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
    return type + u" file";
}

}  // namespace

std::unique_ptr<ShellNamespace> makeFileNamespace(FileSystem& files, ArchiveFolders* archives,
                                                  const TextFolding& folding)
{
    return std::make_unique<FileNamespace>(files, archives, folding);
}

}  // namespace kelvane
