#include "props/stock_readers.h"

#include <array>

#include "base/file_masks.h"
#include "base/utf.h"
#include "props/file_readers.h"

namespace kelvane {
namespace {

struct AttributeLetter {
    char16_t letter;
    std::uint32_t bit;
};

constexpr std::array attributeLetters = {
    AttributeLetter{u'R', attribute::readOnly},     AttributeLetter{u'H', attribute::hidden},
    AttributeLetter{u'S', attribute::system},       AttributeLetter{u'A', attribute::archive},
    AttributeLetter{u'D', attribute::directory},    AttributeLetter{u'C', attribute::compressed},
    AttributeLetter{u'E', attribute::encrypted},    AttributeLetter{u'O', attribute::offline},
    AttributeLetter{u'J', attribute::reparsePoint}, AttributeLetter{u'I', attribute::notContentIndexed},
    AttributeLetter{u'P', attribute::sparse},       AttributeLetter{u'T', attribute::temporary},
};

RawValue attributesText(const ShellItem& item)
{
    std::u16string text;
    for (const auto [letter, bit] : attributeLetters)
        text += (item.info().attributes & bit) != 0 ? letter : u'-';
    return RawValue::text(std::move(text));
}

RawValue kindName(ShellNamespace& shell, const KindMasks& kinds, const ShellItem& item)
{
    if (item.isFolder())
        return {};
    const std::string name = toUtf8(shell.displayName(item));
    for (const auto& [label, masks] : kinds)
        if (!masks.empty() && FileMasks(masks).admits(name))
            return RawValue::text(label);
    return {};
}

RawValue hardLinks(ShellNamespace& shell, const ShellItem& item)
{
    if (!item.inFileSystem())
        return {};
    const auto details = shell.details(item);
    return details ? RawValue::number(VarType::uint32, details->links) : RawValue{};
}

Result<std::vector<std::string>> streamsOf(ShellNamespace& shell, const ShellItem& item)
{
    if (!item.inFileSystem())
        return Error{ErrorKind::notSupported, 0, {}};
    return shell.files().streamNames(item.path());
}

RawValue streamCount(ShellNamespace& shell, const ShellItem& item)
{
    const auto streams = streamsOf(shell, item);
    return streams ? RawValue::number(VarType::uint32, streams->size()) : RawValue{};
}

RawValue streamNames(ShellNamespace& shell, const ShellItem& item)
{
    const auto streams = streamsOf(shell, item);
    if (!streams)
        return {};
    std::u16string text;
    for (const std::string& name : *streams)
        text += (text.empty() ? u"" : u"; ") + toUtf16(name);
    return RawValue::text(std::move(text));
}

// Counts the files directly in the folder; its subfolders are no files.
RawValue fileCount(ShellNamespace& shell, const ShellItem& item)
{
    if (!item.isFolder())
        return {};
    std::uint64_t files = 0;
    const auto count = [&files](const Ref<ShellItem>& child) {
        files += child->isFolder() ? 0 : 1;
        return true;
    };
    const Status listed = shell.enumerate(Ref<const ShellItem>(&item), ListingOptions{}, count);
    return listed ? RawValue::number(VarType::uint32, files) : RawValue{};
}

}  // namespace

std::optional<RawValue> readStock(ShellNamespace& shell, const KindMasks& kinds, const ShellItem& item,
                                  StockProperty row)
{
    switch (row) {
    case StockProperty::fileAttributes:
        return attributesText(item);
    case StockProperty::kind:
        return kindName(shell, kinds, item);
    case StockProperty::totalFileSize:
        return readAllocatedSize(shell, item);
    case StockProperty::streamCount:
        return streamCount(shell, item);
    case StockProperty::streamNames:
        return streamNames(shell, item);
    case StockProperty::fileCount:
        return fileCount(shell, item);
    case StockProperty::hardLinks:
        return hardLinks(shell, item);
    default:
        return std::nullopt;
    }
}

}  // namespace kelvane
