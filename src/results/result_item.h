// One row of the results: a file in a group, with the person's marks.
#pragma once

#include <cstdint>
#include <vector>

#include "props/prop_cache.h"

namespace kelvane {

// Names an item for as long as the model holds it; never given to another item before ResultsModel::clear().
enum class ItemId : std::uint32_t {};

// Names a group likewise. A group's number is what people see, and may change; its id does not.
enum class GroupId : std::uint32_t {};

// The position of a visible item in the list, from 0.
using Row = std::uint32_t;

struct RowRange {
    Row first = 0;
    Row count = 0;
    friend bool operator==(RowRange, RowRange) = default;
};

namespace item_state {
inline constexpr std::uint16_t ticked = 0x8;     // marked for clean-up
inline constexpr std::uint16_t selected = 0x10;  // by the person, in the list
inline constexpr std::uint16_t hidden = 0x20;    // out of view, still a member of its group
inline constexpr std::uint16_t removed = 0x40;   // taken off the list; kept for undo only
}  // namespace item_state

inline constexpr std::uint8_t noTag = 0;

// About 40 bytes: there may be millions. The file's group field holds the number of its group.
struct ResultItem {
    ItemContext file;
    std::uint16_t state = 0;
    std::uint8_t tag = noTag;  // a colour tag, from 1 in the order of the settings
    GroupId group{};

    [[nodiscard]] bool has(std::uint16_t bits) const { return (state & bits) != 0; }
    [[nodiscard]] bool isTicked() const { return has(item_state::ticked); }
    [[nodiscard]] bool isSelected() const { return has(item_state::selected); }
    [[nodiscard]] bool isVisible() const { return !has(item_state::hidden | item_state::removed); }
    [[nodiscard]] std::uint32_t groupNumber() const { return static_cast<std::uint32_t>(file.group.value); }
    // System.Size as a row counts it: 0 for a folder, which has none.
    [[nodiscard]] std::uint64_t bytes() const
    {
        const FileInfo& info = file.item().info();
        return info.kind == FileKind::folder ? 0 : info.size.bytes;
    }
};

struct ResultGroup {
    std::uint32_t number = 0;
    bool approximate = false;
    bool joinedByHand = false;    // a person put some of its items there, no scan compared all of them
    std::vector<ItemId> members;  // visible and hidden ones, in the order in which they came into the model
};

}  // namespace kelvane
