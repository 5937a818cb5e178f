#include "ui/core/desktop_memory.h"

#include <cstddef>
#include <span>
#include <vector>

#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr std::u16string_view section = u"Desktop";

}  // namespace

QByteArray DesktopMemory::value(const QString& name) const
{
    const auto found = values_.find(name);
    return found != values_.end() ? found->second : QByteArray();
}

void DesktopMemory::setValue(const QString& name, const QByteArray& value)
{
    values_[name] = value;
}

void DesktopMemory::forgetLayout()
{
    for (auto& [name, value] : values_)
        if (!name.startsWith(beside))
            value.clear();
}

void DesktopMemory::load(const SettingsRoot& root)
{
    sortOrder_ = storedOrder_ = readSortOrder(root);
    const SettingsNode node(root, section, SettingsAccess::reading);
    for (const std::u16string& name : node.valueNames()) {
        std::vector<std::byte> block;
        if (node.readBinary(block, name) == SettingsCode::done)
            values_[toQt(name)] =
                QByteArray(reinterpret_cast<const char*>(block.data()), static_cast<qsizetype>(block.size()));
    }
}

void DesktopMemory::store(const SettingsRoot& root) const
{
    if (sortOrder_ != storedOrder_)
        static_cast<void>(writeSortOrder(root, sortOrder_));
    if (values_.empty())
        return;
    SettingsNode node(root, section, SettingsAccess::writing);
    for (const auto& [name, value] : values_) {
        const auto bytes = std::as_bytes(std::span(value.constData(), static_cast<std::size_t>(value.size())));
        static_cast<void>(value.isEmpty() ? node.deleteValue(fromQt(name))
                                          : node.writeBinary(bytes.data(), fromQt(name), bytes.size()));
    }
}

}  // namespace kelvane
