#include "platform/shell_item.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

namespace kelvane {
namespace {

using NativeChar = NativeString::value_type;
constexpr NativeChar separator = std::filesystem::path::preferred_separator;

bool needsSeparatorAfter(NativeView parentName)
{
    return parentName.empty() || (parentName.back() != separator && parentName.back() != NativeChar('/'));
}

}  // namespace

static_assert(sizeof(ShellItem) <= 64, "a scan holds millions of items");
static_assert(alignof(ShellItem) >= alignof(NativeChar), "the name stands right behind the object");

ShellItem::ShellItem(Ref<const ShellItem> parent, NativeView name, const FileInfo& info, Place place)
    : place_(place), nameLength_(static_cast<std::uint32_t>(name.size())), parent_(std::move(parent)), info_(info)
{
}

Ref<ShellItem> ShellItem::make(Ref<const ShellItem> parent, NativeView name, const FileInfo& info, Place place)
{
    if (name.size() > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("a file name of more than 4 GiB");
    const std::size_t nameBytes = name.size() * sizeof(NativeChar);
    void* memory = ::operator new(sizeof(ShellItem) + nameBytes);
    auto* item = ::new (memory) ShellItem(std::move(parent), name, info, place);
    if (nameBytes != 0)
        std::memcpy(static_cast<std::byte*>(memory) + sizeof(ShellItem), name.data(), nameBytes);
    return item;
}

void ShellItem::destroy(const ShellItem* item)
{
    while (item) {
        auto* ending = const_cast<ShellItem*>(item);
        const ShellItem* parent = ending->parent_.detach();
        ending->~ShellItem();
        ::operator delete(ending);
        item = parent && parent->dropReference() ? parent : nullptr;
    }
}

NativeView ShellItem::name() const
{
    const auto* behind = reinterpret_cast<const std::byte*>(this) + sizeof(ShellItem);
    return {reinterpret_cast<const NativeChar*>(behind), nameLength_};
}

bool ShellItem::isReparsePoint() const
{
    return (info_.attributes & attribute::reparsePoint) != 0;
}
bool ShellItem::isCloudPlaceholder() const
{
    return (info_.attributes & attribute::cloudPlaceholder) != 0;
}
bool ShellItem::isOffline() const
{
    return (info_.attributes & attribute::offline) != 0;
}
bool ShellItem::isHiddenOrSystem() const
{
    return (info_.attributes & (attribute::hidden | attribute::system)) != 0;
}

NativeString ShellItem::fullName() const
{
    std::size_t length = 0;
    for (const ShellItem* item = this; item; item = item->parent())
        length += item->name().size() + (item->parent() && needsSeparatorAfter(item->parent()->name()) ? 1 : 0);

    // Filled from its end, so that the chain is walked upwards and nothing is moved.
    NativeString full(length, NativeChar());
    NativeChar* at = full.data() + length;
    for (const ShellItem* item = this; item; item = item->parent()) {
        const NativeView name = item->name();
        at -= name.size();
        std::copy(name.begin(), name.end(), at);
        if (item->parent() && needsSeparatorAfter(item->parent()->name()))
            *--at = separator;
    }
    return full;
}

std::filesystem::path ShellItem::path() const
{
    return fullName();
}

const ShellItem* ShellItem::enclosingArchive() const
{
    if (place_ != Place::insideArchive)
        return nullptr;
    const ShellItem* item = this;
    while (item && item->place_ == Place::insideArchive)
        item = item->parent();
    return item;
}

}  // namespace kelvane
