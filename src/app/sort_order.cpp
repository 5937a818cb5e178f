#include "app/sort_order.h"

#include <algorithm>
#include <span>

#include "app/list_section.h"

namespace kelvane {
namespace {

constexpr std::u16string_view sortSection = u"Sort";
constexpr std::u16string_view propertiesName = u"binProps";
constexpr std::u16string_view ascendingName = u"nAscending";
constexpr std::size_t keyBytes = std::tuple_size_v<decltype(PropertyKey{}.bytes())>;

}  // namespace

std::vector<StoredSortKey> readSortOrder(const SettingsRoot& root)
{
    const SettingsNode node(root, sortSection, SettingsAccess::reading);
    std::vector<std::byte> block;
    if (node.readBinary(block, propertiesName) != SettingsCode::done)
        return {};
    std::uint32_t ascending = 0;
    if (node.readNumber(ascendingName, ascending) != SettingsCode::done)
        ascending = ~std::uint32_t{0};
    std::vector<StoredSortKey> keys;
    for (std::size_t i = 0; i < std::min(block.size() / keyBytes, mostSortKeys); ++i) {
        const std::span<const std::byte, keyBytes> bytes(block.data() + i * keyBytes, keyBytes);
        keys.push_back({propertyKeyOf(bytes), (ascending >> i & 1) != 0});
    }
    return keys;
}

SettingsCode writeSortOrder(const SettingsRoot& root, const std::vector<StoredSortKey>& keys)
{
    ListWriter writer(root, sortSection);
    std::vector<std::byte> block;
    std::uint32_t ascending = 0;
    for (std::size_t i = 0; i < std::min(keys.size(), mostSortKeys); ++i) {
        const auto bytes = keys[i].property.bytes();
        block.insert(block.end(), bytes.begin(), bytes.end());
        ascending |= std::uint32_t{keys[i].ascending} << i;
    }
    if (!block.empty()) {
        writer.writeBlock(propertiesName, block);
        writer.writeNumber(ascendingName, ascending);
    }
    return writer.finish();
}

}  // namespace kelvane
