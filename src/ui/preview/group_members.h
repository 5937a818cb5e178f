// Files of a group that are compared side by side.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/shell_item.h"
#include "results/result_item.h"

namespace kelvane {

class Workbench;

inline constexpr std::size_t mostCompared = 4;
inline constexpr std::size_t mostOffered = 200;  // to be chosen from

struct GroupMembers {
    struct Member {
        Ref<const ShellItem> file;
        bool chosen = false;
    };
    std::vector<Member> members;  // at least two of them chosen, or it is empty
    std::string columns;          // of the list
};

// On the window's thread. The group of the item, with it and the first others chosen; the group of the rows that are
// selected, with these chosen. Empty where there is nothing to compare, or where rows of several groups are selected.
[[nodiscard]] GroupMembers membersAround(Workbench& bench, ItemId item);
[[nodiscard]] GroupMembers selectedMembers(Workbench& bench);

}  // namespace kelvane
