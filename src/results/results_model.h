// The groups that a scan found, as the list that a person works on.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "engine/group_sink.h"
#include "platform/shell_item.h"
#include "results/result_item.h"
#include "results/results_history.h"
#include "results/results_observer.h"
#include "results/visible_rows.h"

namespace kelvane {

enum class Mark : std::uint16_t { ticked = item_state::ticked, selected = item_state::selected };

// How many items, and the sum of their sizes.
struct MarkSum {
    std::uint64_t items = 0;
    std::uint64_t bytes = 0;
    friend bool operator==(const MarkSum&, const MarkSum&) = default;
};

// Why items are out of view.
namespace hiding_flag {
inline constexpr std::uint32_t filter = 1;      // the quick filter
inline constexpr std::uint32_t tickedOnly = 2;  // "Show only items marked with ticked checkboxes"
inline constexpr std::uint32_t preCheck = 4;    // only groups that would lose every copy are shown
inline constexpr std::uint32_t tags = 8;        // only items of some colour tags
}  // namespace hiding_flag

enum class Undoable : bool { no, yes };

// Owns items and groups for the life of a results window; used by one thread at a time. Storage and order of view are
// two things: an item stays where it is while the list is sorted, filtered and shortened.
class ResultsModel final : public GroupSink {
public:
    ResultsModel();
    ~ResultsModel() override;
    ResultsModel(const ResultsModel&) = delete;
    ResultsModel& operator=(const ResultsModel&) = delete;

    // Filling, at the end of the list. Items of one group come one after the other. What was done before cannot be
    // undone any more.
    [[nodiscard]] Status add(const Candidate& file, std::uint32_t flags, std::optional<std::int32_t> score) override;
    void add(Ref<const ShellItem> file, std::uint32_t groupNumber, bool approximate);
    void selectLast() override;
    // Everything goes, history included; options and observers stay.
    void clear();

    // The list. Rows are the visible items in the order of view.
    [[nodiscard]] Row rowCount() const;
    [[nodiscard]] ItemId itemAt(Row row) const;
    [[nodiscard]] std::optional<Row> rowOf(ItemId item) const;  // nothing for an item out of view
    [[nodiscard]] const ResultItem& item(ItemId id) const { return items_[index(id)]; }
    // For reading values, which fills the cache of the file's context.
    [[nodiscard]] ItemContext& file(ItemId id) { return items_[index(id)].file; }
    [[nodiscard]] std::uint32_t itemCount() const;    // visible and hidden
    [[nodiscard]] std::uint32_t hiddenCount() const;  // of these
    // Ids run from 0 to this, those of removed items included: for tables beside the model.
    [[nodiscard]] std::uint32_t idLimit() const { return static_cast<std::uint32_t>(items_.size()); }
    void forEachRow(const std::function<void(ItemId)>& visit) const;
    // Hidden items included, in the order of view.
    void forEachItem(const std::function<void(ItemId)>& visit) const;

    // Groups.
    [[nodiscard]] const ResultGroup& groupOf(ItemId item) const { return groups_[index(items_[index(item)].group)]; }
    [[nodiscard]] std::uint32_t groupCount() const { return liveGroups_; }
    // Runs of rows that share a group, from the first row to the last, until `visit` answers with false.
    void forEachRun(const std::function<bool(std::span<const ItemId>)>& visit) const;
    [[nodiscard]] RowRange runAt(Row row) const;
    // Whether items of one group stand next to one another.
    [[nodiscard]] bool isGrouped() const { return grouped_; }

    // Order of view. `order` holds what order() holds: every item of the list, hidden or not, and those that undo may
    // bring back. `grouped` is the caller's word that items of one group, be they hidden, are adjacent.
    [[nodiscard]] std::span<const ItemId> order() const { return order_; }
    void setOrder(std::vector<ItemId> order, bool grouped);

    // Marks. With tick boxes an item is marked when it is ticked, without them when it is selected.
    void useTickBoxes(bool on) { tickBoxes_ = on; }
    [[nodiscard]] bool hasTickBoxes() const { return tickBoxes_; }
    [[nodiscard]] Mark markInForce() const { return tickBoxes_ ? Mark::ticked : Mark::selected; }
    [[nodiscard]] bool isMarked(ItemId id) const { return item(id).has(static_cast<std::uint16_t>(markInForce())); }
    // One step of history for ticks; the selection has no history. Items out of view may be marked as well, removed
    // ones are passed over.
    void mark(std::span<const ItemId> items, Mark mark, bool on);
    void toggle(std::span<const ItemId> items, Mark mark);
    // Puts ticks on some items and off others in one step; one that is among both loses its tick.
    void retick(std::span<const ItemId> on, std::span<const ItemId> off);
    void invertTicks();     // of the items in view
    void clearTicks();      // of the items in view
    void clearSelection();  // in view and hidden
    [[nodiscard]] MarkSum inView(Mark mark) const;
    [[nodiscard]] MarkSum everywhere(Mark mark) const;  // hidden items included

    // Colour tags; no history. Items that were removed keep theirs.
    void setTag(std::span<const ItemId> items, std::uint8_t tag);

    // Hiding. All that are hidden come back by showAll() only. Each gives the number of items hidden; the flag is set
    // also when there were none, but for tickedOnly.
    std::uint32_t hide(std::span<const ItemId> items, std::uint32_t flag);
    std::uint32_t hideUnless(std::uint32_t flag, const std::function<bool(ItemId)>& stays);
    void showAll();
    [[nodiscard]] std::uint32_t hidingFlags() const { return hidingFlags_; }

    // Taking off the list; files are not touched. A group that is left with one item loses it too when lone survivors
    // are to go. Gives the number of items removed, survivors included.
    void dropLoneSurvivors(bool on) { dropsSurvivors_ = on; }
    [[nodiscard]] bool dropsLoneSurvivors() const { return dropsSurvivors_; }
    std::uint32_t remove(std::span<const ItemId> items, Undoable undoable = Undoable::yes);

    // "Put all selected items in the same group": all take the smallest number among them. False, and nothing changes,
    // when the selection does not reach into two groups.
    [[nodiscard]] bool regroupSelection();
    // "Merge current group items with the previous group": the run of rows of the first selected item joins the group
    // of the row before it, and both are selected. False when nothing is selected or no group stands before.
    [[nodiscard]] bool mergeWithPrevious();

    // History of ticks, removals and regroupings.
    [[nodiscard]] bool canUndo() const { return history_.canUndo(); }
    [[nodiscard]] bool canRedo() const { return history_.canRedo(); }
    void undo();
    void redo();

    // Held by address until taken away.
    void addObserver(ResultsObserver& observer);
    void removeObserver(ResultsObserver& observer);

private:
    template <class Id>
    [[nodiscard]] static std::size_t index(Id id)
    {
        return static_cast<std::size_t>(id);
    }
    // Positions of the order of view from the first one to before the end; empty at first, and grows.
    struct Stretch {
        std::size_t first = std::numeric_limits<std::size_t>::max(), end = 0;
        [[nodiscard]] bool empty() const { return first >= end; }
        void take(std::size_t position);
        void take(Stretch other);
    };
    // What an operation did so far and observers were not told yet.
    struct Changes {
        Stretch replaced, changed;
        bool counts = false;
    };

    void append(Ref<const ShellItem> file, std::uint32_t groupNumber, bool approximate);
    [[nodiscard]] GroupId groupNumbered(std::uint32_t number);
    void renumber(Stretch stretch);

    // The one way to change an item's state: counts, sums, view and what observers are told follow.
    void setState(ItemId id, std::uint16_t state);
    void count(const ResultItem& item, bool in);
    void flip(std::span<const ItemId> items, std::uint16_t bits);
    void touchRow(ItemId id);
    [[nodiscard]] RowRange rowsOf(Stretch stretch) const;
    void announce();  // ends every operation

    [[nodiscard]] std::vector<ItemId> rowsWhere(const std::function<bool(const ResultItem&)>& wanted) const;
    [[nodiscard]] std::vector<ItemId> onTheList(std::span<const ItemId> items) const;
    [[nodiscard]] std::vector<ItemId> selectedItems() const;  // in view and hidden
    void toggleEach(std::vector<ItemId> items, Mark mark);

    [[nodiscard]] std::vector<ItemId> withSurvivors(std::vector<ItemId> leaving) const;
    void takeOff(std::span<const ItemId> items);
    void putBack(std::span<const ItemId> items);
    void compact();  // lets go of the places of removed items

    using Moves = std::span<const HistoryStep::Move>;
    void enterGroups(std::span<const ItemId> items);
    void leaveGroups(std::span<const ItemId> items);
    void regroup(std::span<const ItemId> items, GroupId target, bool dropSurvivors);
    [[nodiscard]] std::vector<ItemId> lonelyIn(Moves moves) const;
    void moveTo(Moves moves, bool back);
    void setApproximate(GroupId groupId, bool approximate);
    void setFlags(const HistoryStep& step, bool on);
    void spreadFlags(HistoryStep& step);
    [[nodiscard]] Stretch stretchOfGroups(Moves moves) const;
    void gather(Stretch stretch, Moves moved);
    void reorder(HistoryStep& step);
    void restoreOrder(const HistoryStep& step, bool back);

    std::vector<ResultItem> items_;                        // by id
    std::vector<ResultGroup> groups_;                      // by id; one without members is free
    std::unordered_map<std::uint32_t, GroupId> groupIds_;  // by number
    std::vector<ItemId> order_;                            // every item that is not gone for good
    std::vector<std::uint32_t> positions_;                 // in order_, by id
    VisibleRows visible_;                                  // of the positions in order_, those in view
    ResultsHistory history_;
    std::vector<ResultsObserver*> observers_;
    Changes changes_;
    Row rowsTold_ = 0;  // how many rows observers know of
    MarkSum tickedInView_, tickedHidden_, selectedInView_, selectedHidden_;
    std::uint32_t aliveItems_ = 0;
    std::uint32_t liveGroups_ = 0;
    std::uint32_t hidingFlags_ = 0;
    std::uint32_t orderVersion_ = 0;  // another one for every order that a step of history cannot know
    bool grouped_ = true;
    bool tickBoxes_ = true;
    bool dropsSurvivors_ = false;
};

}  // namespace kelvane
