#include "props/file_readers.h"

#include <algorithm>
#include <array>

#include "base/utf.h"
#include "platform/native_text.h"
#include "props/file_kinds.h"

namespace kelvane {
namespace {

RawValue timeValue(FileTime time)
{
    return time.ticks != 0 ? RawValue::number(VarType::fileTime, static_cast<std::uint64_t>(time.ticks)) : RawValue{};
}

RawValue created(ShellNamespace& shell, const ShellItem& item)
{
    const auto details = shell.details(item);
    return details ? timeValue(details->created) : RawValue{};
}

RawValue accessed(ShellNamespace& shell, const ShellItem& item)
{
    const auto details = shell.details(item);
    return details ? timeValue(details->accessed) : RawValue{};
}

RawValue owner(ShellNamespace& shell, const ShellItem& item)
{
    if (!item.inFileSystem())
        return {};
    const auto details = shell.details(item);
    if (!details)
        return {};
    auto name = shell.files().ownerName(details->ownerId);
    return name ? RawValue::text(std::move(name).value()) : RawValue{};
}

RawValue name(ShellNamespace& shell, const ShellItem& item)
{
    return RawValue::text(shell.displayName(item));
}

// The length of the name without its extension; the shell says what an extension is, in lower case but as long.
std::size_t baseLength(ShellNamespace& shell, const ShellItem& item, std::u16string_view text)
{
    return text.size() - std::min(text.size(), shell.itemType(item).size());
}

RawValue nameWithoutExtension(ShellNamespace& shell, const ShellItem& item)
{
    std::u16string text = shell.displayName(item);
    text.resize(baseLength(shell, item, text));
    return RawValue::text(std::move(text));
}

RawValue extension(ShellNamespace& shell, const ShellItem& item)
{
    const std::u16string text = shell.displayName(item);
    return RawValue::text(text.substr(baseLength(shell, item, text)));
}

RawValue fullPath(ShellNamespace&, const ShellItem& item)
{
    return RawValue::text(displayFromNative(item.fullName()));
}

// A root has no parent item; its folder is what its path says.
std::filesystem::path folderOf(const ShellItem& item)
{
    return item.parent() != nullptr ? item.parent()->path() : item.path().parent_path();
}

RawValue folderPath(ShellNamespace&, const ShellItem& item)
{
    return RawValue::text(displayFromNative(folderOf(item).native()));
}

RawValue folderName(ShellNamespace&, const ShellItem& item)
{
    const std::filesystem::path folder = folderOf(item);
    return RawValue::text(displayFromNative(folder.has_filename() ? folder.filename().native() : folder.native()));
}

RawValue url(ShellNamespace&, const ShellItem& item)
{
    if (!item.inFileSystem())
        return {};
    return RawValue::text(
        u"file://" + toUtf16(percentEncode(bytesFromNative(item.path().generic_string<NativeString::value_type>()))));
}

RawValue type(ShellNamespace& shell, const ShellItem& item)
{
    return RawValue::text(shell.itemType(item));
}

RawValue typeText(ShellNamespace& shell, const ShellItem& item)
{
    return RawValue::text(shell.typeText(item));
}

RawValue kind(ShellNamespace& shell, const ShellItem& item)
{
    return RawValue::text(std::u16string(fileKind(item.isFolder(), shell.itemType(item)).name));
}

RawValue kindText(ShellNamespace& shell, const ShellItem& item)
{
    return RawValue::text(std::u16string(fileKind(item.isFolder(), shell.itemType(item)).label));
}

struct Reader {
    std::uint32_t identifier;
    RawValue (*read)(ShellNamespace&, const ShellItem&);
};

constexpr std::array readers = {
    Reader{property_id::dateCreated, created},
    Reader{property_id::dateAccessed, accessed},
    Reader{property_id::fileAllocationSize, readAllocatedSize},
    Reader{property_id::fileOwner, owner},
    Reader{property_id::fileName, name},
    Reader{property_id::itemName, name},
    Reader{property_id::itemNameDisplay, name},
    Reader{property_id::itemNameDisplayWithoutExtension, nameWithoutExtension},
    Reader{property_id::fileExtension, extension},
    Reader{property_id::parsingName, name},
    Reader{property_id::parsingPath, fullPath},
    Reader{property_id::itemPathDisplay, fullPath},
    Reader{property_id::itemFolderPathDisplay, folderPath},
    Reader{property_id::itemFolderNameDisplay, folderName},
    Reader{property_id::itemUrl, url},
    Reader{property_id::itemType, type},
    Reader{property_id::itemTypeText, typeText},
    Reader{property_id::kind, kind},
    Reader{property_id::kindText, kindText},
};

}  // namespace

RawValue readAllocatedSize(ShellNamespace& shell, const ShellItem& item)
{
    if (!item.inFileSystem())
        return {};
    const auto details = shell.details(item);
    return details ? RawValue::number(VarType::uint64, details->allocated.bytes) : RawValue{};
}

std::optional<RawValue> readFileProperty(ShellNamespace& shell, const ShellItem& item, const PropRef& property)
{
    const auto found = std::find_if(readers.begin(), readers.end(), [&property](const Reader& reader) {
        return reader.identifier == property.identifier;
    });
    if (found == readers.end())
        return std::nullopt;
    return found->read(shell, item);
}

}  // namespace kelvane
