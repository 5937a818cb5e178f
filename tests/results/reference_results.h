// The results list as plain lists: slow, and simple enough to be right at a glance.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "results/results_model.h"

namespace kelvane::testing {

// Items are numbered from 0 in the order in which they came, as the ids of the model are.
class ReferenceResults {
public:
    using Number = std::uint32_t;
    using Numbers = std::vector<Number>;

    struct Item {
        std::uint32_t group = 0;
        std::uint64_t bytes = 0;
        bool ticked = false, selected = false, hidden = false, removed = false;
        std::uint8_t tag = 0;
        [[nodiscard]] bool visible() const { return !hidden && !removed; }
    };

    std::vector<Item> items;
    Numbers order;                              // removed ones included
    std::map<std::uint32_t, bool> approximate;  // by group
    std::map<std::uint32_t, bool> byHand;       // likewise
    std::uint32_t hidingFlags = 0;
    bool grouped = true;
    bool dropsSurvivors = false;

    void add(std::uint32_t group, std::uint64_t bytes, bool sampled);
    void setOrder(Numbers wanted, bool groupsTogether);

    void tick(const Numbers& on, const Numbers& off);
    void toggle(const Numbers& those);
    void select(const Numbers& those, bool on);
    void tag(const Numbers& those, std::uint8_t value);
    std::uint32_t hide(const Numbers& those, std::uint32_t flag);
    void showAll();

    std::uint32_t remove(const Numbers& those, Undoable undoable);
    bool regroupSelection();
    bool mergeWithPrevious();

    [[nodiscard]] bool canUndo() const { return !done_.empty(); }
    [[nodiscard]] bool canRedo() const { return !undone_.empty(); }
    void undo();
    void redo();
    // After a sort it is the model's affair where items come back, as long as groups stay together.
    [[nodiscard]] bool orderIsKnown() const { return orderIsKnown_; }

    [[nodiscard]] Numbers alive() const;  // in the order of view
    [[nodiscard]] Numbers rows() const;
    [[nodiscard]] Numbers selectedRows() const;
    [[nodiscard]] Numbers members(std::uint32_t group) const;
    [[nodiscard]] MarkSum sum(bool Item::*mark, bool hiddenToo) const;
    // Groups whose items changed sides in the last operation.
    [[nodiscard]] const std::set<std::uint32_t>& touchedGroups() const { return touched_; }

private:
    struct Snapshot {
        std::vector<Item> items;
        std::map<std::uint32_t, bool> approximate, byHand;
        Numbers alive;
    };
    struct Step {
        Snapshot before, after;
        unsigned sorts = 0;  // how often the list had been sorted
    };

    [[nodiscard]] Snapshot snapshot() const { return {items, approximate, byHand, alive()}; }
    void record(Snapshot before);
    void restore(const Snapshot& from, const Snapshot& to, unsigned sorts, bool undoing);
    void regroup(const Numbers& those, std::uint32_t target, bool dropLonely);
    void gather(const std::set<Number>& moved);
    [[nodiscard]] std::set<Number> lonelyOf(const std::set<std::uint32_t>& groups) const;

    std::vector<Step> done_, undone_;
    unsigned sorts_ = 0;
    bool orderIsKnown_ = true;
    std::set<std::uint32_t> touched_;
};

}  // namespace kelvane::testing
