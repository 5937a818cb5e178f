// How lists are kept: a section for each, its entries numbered from 0.
#pragma once

#include <set>
#include <span>

#include "app/settings_node.h"

namespace kelvane {

// "Name3": the value that holds this part of an entry.
[[nodiscard]] std::u16string entryName(std::u16string_view part, std::size_t number);

// The numbers of the entries that have this part, rising. Gaps are no fault.
[[nodiscard]] std::vector<std::size_t> entryNumbers(const SettingsNode& section, std::u16string_view part);

// Writes a section anew: what stood there before and is not written again is removed at the end.
class ListWriter {
public:
    ListWriter(const SettingsRoot& root, std::u16string_view section);

    // A value that this place cannot hold for its length is left out; the first other failure is remembered.
    void writeNumber(std::u16string_view name, std::uint32_t value);
    void writeText(std::u16string_view name, std::u16string_view text);
    void writeBlock(std::u16string_view name, std::span<const std::byte> block);

    [[nodiscard]] SettingsCode finish();

private:
    void note(std::u16string_view name, SettingsCode code);

    SettingsNode node_;
    std::set<std::u16string> written_;  // folded
    SettingsCode code_ = SettingsCode::done;
};

}  // namespace kelvane
