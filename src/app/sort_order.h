// The sort order of the results, as it is kept in the section "Sort" of the settings.
#pragma once

#include <vector>

#include "app/settings_node.h"
#include "platform/property_key.h"

namespace kelvane {

// A key of the order, the first one foremost. The property may be one that this computer does not know.
struct StoredSortKey {
    PropertyKey property;
    bool ascending = true;
    friend bool operator==(const StoredSortKey&, const StoredSortKey&) = default;
};

inline constexpr std::size_t mostSortKeys = 32;  // one bit each

// "binProps" holds the keys of the properties, 20 bytes each; "nAscending" a bit for each, that of the first key
// being bit 0. A block that is cut short gives the keys that are whole, a missing "nAscending" lets all ascend.
[[nodiscard]] std::vector<StoredSortKey> readSortOrder(const SettingsRoot& root);

// In the place of what is there; keys over the limit are left out. Without keys the section is left empty.
[[nodiscard]] SettingsCode writeSortOrder(const SettingsRoot& root, const std::vector<StoredSortKey>& keys);

}  // namespace kelvane
