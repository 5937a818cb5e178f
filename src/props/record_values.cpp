#include "props/record_values.h"

#include "props/value_convert.h"

namespace kelvane {
namespace {

// What the property system stands for "true".
constexpr std::uint64_t variantTrue = 0xFFFF;

RecordNumber sizeOf(const ShellItem& item)
{
    if (item.info().kind == FileKind::folder)
        return {};
    return {VarType::uint64, item.info().size.bytes};
}

RecordNumber modifiedOf(const ShellItem& item)
{
    const std::int64_t ticks = item.info().modified.ticks;
    return ticks != 0 ? RecordNumber{VarType::fileTime, static_cast<std::uint64_t>(ticks)} : RecordNumber{};
}

RecordNumber groupOf(const ItemContext& file)
{
    return file.group.grouped() ? RecordNumber{VarType::uint32, static_cast<std::uint64_t>(file.group.value)}
                                : RecordNumber{};
}

}  // namespace

std::uint64_t RecordNumber::comparable() const noexcept
{
    return type != VarType::empty ? wholeBits(type, bits) : PROPCACHE::missingMark;
}

std::optional<RecordNumber> recordNumber(const ItemContext& file, const PropRef& property) noexcept
{
    switch (property.identifier) {
    case property_id::size:
        return sizeOf(file.item());
    case property_id::dateModified:
        return modifiedOf(file.item());
    case property_id::groupId:
        return groupOf(file);
    case property_id::isFolder:
        return RecordNumber{VarType::boolean, file.item().isFolder() ? variantTrue : 0};
    case property_id::fileAttributes:
        // The stock row with the same key is a text.
        if (property.kind() == PropKind::number)
            return RecordNumber{VarType::uint32, file.item().info().attributes};
        break;
    default:
        break;
    }
    return std::nullopt;
}

}  // namespace kelvane
