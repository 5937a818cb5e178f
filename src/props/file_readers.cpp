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

// Entries of an archive take no room and have no owner of their own.
RawValue allocated(ShellNamespace& shell, const ShellItem& item)
{
    if (!item.inFileSystem())
        return {};
    const auto details = shell.details(item);
    return details ? RawValue::number(VarType::uint64, details->allocated.bytes) : RawValue{};
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

// Where the extension of a file name begins, its dot included; a dot in front hides a file and begins no extension.
std::size_t extensionStart(const ShellItem& item, std::u16string_view text)
{
    const auto dot = text.rfind(u'.');
    return item.info().kind == FileKind::folder || dot == std::u16string_view::npos || dot == 0 ? text.size() : dot;
}

RawValue nameWithoutExtension(ShellNamespace& shell, const ShellItem& item)
{
    std::u16string text = shell.displayName(item);
    text.resize(extensionStart(item, text));
    return RawValue::text(std::move(text));
}

RawValue extension(ShellNamespace& shell, const ShellItem& item)
{
    const std::u16string text = shell.displayName(item);
    return RawValue::text(text.substr(extensionStart(item, text)));
}

RawValue parsingName(ShellNamespace&, const ShellItem& item)
{
    return RawValue::text(displayFromNative(item.name()));
}

RawValue fullPath(ShellNamespace&, const ShellItem& item)
{
    return RawValue::text(displayFromNative(item.fullName()));
}

// A root has no parent item; its folder is what its path says.
RawValue folderPath(ShellNamespace&, const ShellItem& item)
{
    const auto path = item.parent() != nullptr ? item.parent()->path() : item.path().parent_path();
    return RawValue::text(displayFromNative(path.native()));
}

RawValue folderName(ShellNamespace& shell, const ShellItem& item)
{
    if (item.parent() != nullptr && item.parent()->parent() != nullptr)
        return RawValue::text(shell.displayName(*item.parent()));
    const auto path = item.parent() != nullptr ? item.parent()->path() : item.path().parent_path();
    return RawValue::text(displayFromNative(path.has_filename() ? path.filename().native() : path.native()));
}

RawValue url(ShellNamespace&, const ShellItem& item)
{
    if (!item.inFileSystem())
        return {};
    return RawValue::text(u"file://" +
                          toUtf16(percentEncode(pathText(item.path().generic_string<NativeString::value_type>()))));
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
    Reader{property_id::fileAllocationSize, allocated},
    Reader{property_id::fileOwner, owner},
    Reader{property_id::fileName, name},
    Reader{property_id::itemName, name},
    Reader{property_id::itemNameDisplay, name},
    Reader{property_id::itemNameDisplayWithoutExtension, nameWithoutExtension},
    Reader{property_id::fileExtension, extension},
    Reader{property_id::parsingName, parsingName},
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
