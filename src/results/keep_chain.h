// A marking plan made ready: which rows of one group it keeps.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/file_masks.h"
#include "results/folder_text.h"
#include "results/marking_rules.h"

namespace kelvane {

// Holds on to what it is made of. Used by one thread; reads values, which fills the caches of the model's items.
class KeepChain {
public:
    KeepChain(ResultsModel& model, const MarkingPlan& plan, const MarkingPorts& ports);

    // By row of the group: whether the plan keeps it. Time grows with the group times the length of the plan.
    [[nodiscard]] std::vector<bool> kept(std::span<const ItemId> group);
    // Rows of the last group that are kept for their protected folder alone.
    [[nodiscard]] std::uint32_t protectedRows() const { return protectedRows_; }

private:
    using Rows = std::vector<std::uint32_t>;  // of the group, ascending

    struct Rule {
        KeepRule keep;
        FolderText folder;
        FileMasks masks;
    };
    class Group;

    void narrow(Group& group, const Rule& rule, Rows& left) const;
    void narrowToPreferred(Group& group, Rows& left) const;
    void protect(Group& group, std::vector<bool>& kept);

    ResultsModel& model_;
    const MarkingPorts& ports_;
    PropRef size_, dateModified_;
    std::vector<Rule> rules_;
    std::vector<FolderText> preferred_, protected_;
    bool keepsAllLeft_;
    bool mayLoseGroups_;
    std::uint32_t protectedRows_ = 0;
};

}  // namespace kelvane
