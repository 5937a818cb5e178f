// Random operations on the results against plain lists, and against a view that only follows what it is told.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

#include "results/reference_results.h"
#include "support/paths.h"

namespace kelvane {
namespace {

using testing::ReferenceResults;
using Numbers = ReferenceResults::Numbers;

ItemId idOf(ReferenceResults::Number number)
{
    return static_cast<ItemId>(number);
}

std::vector<ItemId> idsOf(const Numbers& numbers)
{
    std::vector<ItemId> ids;
    std::transform(numbers.begin(), numbers.end(), std::back_inserter(ids), idOf);
    return ids;
}

Numbers numbersOf(std::span<const ItemId> ids)
{
    Numbers numbers;
    for (const ItemId id : ids)
        numbers.push_back(static_cast<ReferenceResults::Number>(id));
    return numbers;
}

// Keeps rows by nothing but what is announced.
class MirrorView final : public ResultsObserver {
public:
    explicit MirrorView(ResultsModel& model) : model_(model) { model_.addObserver(*this); }
    ~MirrorView() override { model_.removeObserver(*this); }

    void rowsReplaced(RowRange before, Row after) override
    {
        EXPECT_EQ(calls_++, 0) << "first, and once";
        tight = false;  // changed rows may have come in view by this already
        ASSERT_LE(before.first + before.count, rows_.size());
        const auto first = rows_.begin() + before.first;
        const auto gap = rows_.erase(first, first + before.count);
        std::vector<RowFace> fresh;
        for (Row row = before.first; row < before.first + after; ++row)
            fresh.push_back(faceOf(row));
        rows_.insert(gap, fresh.begin(), fresh.end());
    }

    void rowsChanged(RowRange rows) override
    {
        EXPECT_LE(std::exchange(calls_, 2), 1) << "second, and once";
        ASSERT_LE(rows.first + rows.count, rows_.size());
        ASSERT_GT(rows.count, 0u);
        if (tight) {
            EXPECT_NE(rows_[rows.first], faceOf(rows.first)) << "the range begins too early";
            EXPECT_NE(rows_[rows.first + rows.count - 1], faceOf(rows.first + rows.count - 1)) << "it ends too late";
        }
        for (Row row = rows.first; row < rows.first + rows.count; ++row)
            rows_[row] = faceOf(row);
    }

    void countsChanged() override
    {
        EXPECT_LE(std::exchange(calls_, 3), 2) << "last, and once";
        counts_ = countsNow();
    }

    void expectTruth()
    {
        std::vector<RowFace> truth;
        for (Row row = 0; row < model_.rowCount(); ++row)
            truth.push_back(faceOf(row));
        EXPECT_EQ(rows_, truth);
        EXPECT_EQ(counts_, countsNow());
        calls_ = 0;
    }

    bool tight = true;

private:
    using RowFace = std::vector<std::uint64_t>;
    using Counts = std::vector<std::uint64_t>;

    [[nodiscard]] RowFace faceOf(Row row) const
    {
        const ItemId id = model_.itemAt(row);
        const ResultItem& item = model_.item(id);
        return {static_cast<std::uint64_t>(id), item.isTicked(), item.isSelected(), item.tag, item.groupNumber(),
                model_.groupOf(id).approximate};
    }

    [[nodiscard]] Counts countsNow() const
    {
        Counts counts{model_.itemCount(), model_.hiddenCount(), model_.groupCount(), model_.hidingFlags()};
        for (const Mark mark : {Mark::ticked, Mark::selected}) {
            for (const MarkSum& sum : {model_.inView(mark), model_.everywhere(mark)})
                counts.insert(counts.end(), {sum.items, sum.bytes});
        }
        return counts;
    }

    ResultsModel& model_;
    std::vector<RowFace> rows_;
    Counts counts_ = Counts(12);
    int calls_ = 0;
};

class RandomResults {
public:
    explicit RandomResults(unsigned seed) : random_(seed) {}

    void run(int steps)
    {
        for (int i = 0; i < 10; ++i)
            addOne();
        for (int i = 0; i < steps && !::testing::Test::HasFailure(); ++i) {
            mirror_.tight = true;
            step();
            expectSame();
            if (reference_.alive().empty())
                addOne();
        }
        if (::testing::Test::HasFailure())
            ADD_FAILURE() << log_.str();
    }

private:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }
    bool chance() { return below(2) == 0; }

    // With items out of view, removed ones and repetitions among them.
    Numbers some(const char* what)
    {
        Numbers numbers;
        log_ << what;
        for (std::size_t left = below(5); left > 0; --left) {
            numbers.push_back(static_cast<ReferenceResults::Number>(below(reference_.items.size())));
            log_ << ' ' << numbers.back();
        }
        log_ << '\n';
        return numbers;
    }

    void addOne()
    {
        const std::uint32_t last = reference_.items.empty() ? 0 : reference_.items.back().group;
        const auto group = static_cast<std::uint32_t>(below(8) == 0 ? 1 + below(6) : last + (chance() ? 0 : 1));
        const bool folder = below(6) == 0;
        const bool sampled = below(6) == 0;
        FileInfo info;
        info.kind = folder ? FileKind::folder : FileKind::regular;
        info.size.bytes = below(1000);
        log_ << "add to " << group << (sampled ? " sampled\n" : "\n");
        model_.add(ShellItem::make(nullptr, testing::native("/f"), info, ShellItem::Place::fileSystem),
                   std::max(group, 1u), sampled);
        reference_.add(std::max(group, 1u), folder ? 0 : info.size.bytes, sampled);
        expectSame();
    }

    void step()
    {
        const std::size_t kind = below(100);
        if (kind < 20)
            takeBack(below(3) != 0);
        else if (kind < 30)
            goBackAndForth();
        else if (kind < 50)
            changeMarks();
        else if (kind < 65)
            changeView();
        else if (kind < 80)
            changeOrder();
        else if (kind < 97)
            changeGroups();
        else
            addOne();
    }

    void goBackAndForth()
    {
        const std::size_t steps = 1 + below(5);
        for (std::size_t i = 0; i < 2 * steps && !::testing::Test::HasFailure(); ++i) {
            takeBack(i < steps);
            expectSame();
        }
    }

    void takeBack(bool undoing)
    {
        ASSERT_EQ(model_.canUndo(), reference_.canUndo());
        ASSERT_EQ(model_.canRedo(), reference_.canRedo());
        log_ << (undoing ? "undo\n" : "redo\n");
        const Numbers before = reference_.order;
        undoing ? model_.undo() : model_.redo();
        undoing ? reference_.undo() : reference_.redo();
        if (reference_.orderIsKnown())
            return;
        // Items of other groups keep their order.
        const auto others = [this](Numbers numbers) {
            std::erase_if(numbers, [this](ReferenceResults::Number number) {
                return reference_.touchedGroups().contains(reference_.items[number].group) ||
                       reference_.items[number].removed;
            });
            return numbers;
        };
        EXPECT_EQ(others(numbersOf(model_.order())), others(before));
        EXPECT_TRUE(std::is_permutation(before.begin(), before.end(), numbersOf(model_.order()).begin()));
        reference_.order = numbersOf(model_.order());
    }

    void changeMarks()
    {
        switch (below(9)) {
        case 0:
            return tickRows(some("tick"), {});
        case 1:
            return tickRows({}, some("untick"));
        case 2: {
            const Numbers on = some("on"), off = some("off");
            model_.retick(idsOf(on), idsOf(off));
            return reference_.tick(on, off);
        }
        case 3: {
            const Numbers those = some("toggle");
            model_.toggle(idsOf(those), Mark::ticked);
            return reference_.toggle(those);
        }
        case 4:
            log_ << "invert\n";
            model_.invertTicks();
            return reference_.toggle(reference_.rows());
        case 5:
            log_ << "clear ticks\n";
            model_.clearTicks();
            return reference_.tick({}, reference_.rows());
        case 6:
            log_ << "clear selection\n";
            model_.clearSelection();
            return reference_.select(reference_.alive(), false);
        case 7: {
            const Numbers those = some("tag");
            const auto tag = static_cast<std::uint8_t>(below(3));
            model_.setTag(idsOf(those), tag);
            return reference_.tag(those, tag);
        }
        default:
            return selectSome();
        }
    }

    void tickRows(const Numbers& on, const Numbers& off)
    {
        model_.mark(idsOf(on.empty() ? off : on), Mark::ticked, !on.empty());
        reference_.tick(on, off);
    }

    void selectSome()
    {
        const Numbers those = some("select");
        const bool on = below(4) != 0;
        log_ << (on ? " on\n" : " off\n");
        model_.mark(idsOf(those), Mark::selected, on);
        reference_.select(those, on);
    }

    void changeView()
    {
        const std::uint32_t flag = chance() ? hiding_flag::filter : hiding_flag::tickedOnly;
        if (below(3) == 0) {
            log_ << "show all\n";
            model_.showAll();
            return reference_.showAll();
        }
        if (chance()) {
            const Numbers those = some("hide");
            EXPECT_EQ(model_.hide(idsOf(those), flag), reference_.hide(those, flag));
            return;
        }
        const std::uint32_t gone = static_cast<std::uint32_t>(below(7));
        log_ << "hide group " << gone << '\n';
        Numbers those = reference_.rows();
        std::erase_if(those, [&](auto number) { return reference_.items[number].group != gone; });
        const auto stays = [&](ItemId id) { return model_.item(id).groupNumber() != gone; };
        EXPECT_EQ(model_.hideUnless(flag, stays), reference_.hide(those, flag));
    }

    // Removed items stand with their group or, which a sort by group numbers never does, anywhere.
    void changeOrder()
    {
        Numbers order = reference_.order;
        std::shuffle(order.begin(), order.end(), random_);
        const bool grouped = below(3) != 0;
        const bool scattered = chance();
        if (grouped) {
            std::map<std::uint32_t, std::size_t> places;
            for (std::size_t i = 0; i < order.size(); ++i)
                places.try_emplace(reference_.items[order[i]].group, i);
            std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) {
                return places[reference_.items[a].group] < places[reference_.items[b].group];
            });
        }
        if (scattered)
            scatterRemoved(order);
        log_ << "order" << (grouped ? " grouped" : "");
        for (const auto number : order)
            log_ << ' ' << number;
        log_ << '\n';
        model_.setOrder(idsOf(order), grouped);
        reference_.setOrder(order, grouped);
    }

    void scatterRemoved(Numbers& order)
    {
        const Numbers all = order;
        std::erase_if(order, [this](auto number) { return reference_.items[number].removed; });
        for (const auto number : all) {
            if (reference_.items[number].removed)
                order.insert(order.begin() + static_cast<std::ptrdiff_t>(below(order.size() + 1)), number);
        }
    }

    void changeGroups()
    {
        switch (below(4)) {
        case 0: {
            const bool drops = chance();
            const Undoable undoable = below(5) == 0 ? Undoable::no : Undoable::yes;
            const Numbers those = some(drops ? "remove with survivors" : "remove");
            log_ << (undoable == Undoable::no ? " for good\n" : "");
            model_.dropLoneSurvivors(drops);
            reference_.dropsSurvivors = drops;
            EXPECT_EQ(model_.remove(idsOf(those), undoable), reference_.remove(those, undoable));
            return;
        }
        case 1:
            selectSome();
            mirror_.expectTruth();
            mirror_.tight = false;
            log_ << "merge\n";
            EXPECT_EQ(model_.mergeWithPrevious(), reference_.mergeWithPrevious());
            return;
        default:
            selectSome();
            mirror_.expectTruth();
            log_ << "regroup\n";
            EXPECT_EQ(model_.regroupSelection(), reference_.regroupSelection());
        }
        // Where removed items wait is the model's own affair.
        EXPECT_TRUE(
            std::is_permutation(reference_.order.begin(), reference_.order.end(), numbersOf(model_.order()).begin()));
    }

    void expectSame()
    {
        mirror_.expectTruth();
        std::vector<ItemId> alive;
        model_.forEachItem([&](ItemId id) { alive.push_back(id); });
        ASSERT_EQ(numbersOf(alive), reference_.alive());
        reference_.order = numbersOf(model_.order());
        expectSameItems(alive);
        expectSameRows();
        expectSameCounts();
        EXPECT_EQ(model_.isGrouped(), reference_.grouped);
        if (reference_.grouped)
            expectGroupsTogether(alive);
    }

    void expectSameItems(const std::vector<ItemId>& alive)
    {
        for (const ItemId id : alive) {
            const ResultItem& item = model_.item(id);
            const ReferenceResults::Item& wanted = reference_.items[static_cast<std::size_t>(id)];
            EXPECT_EQ(std::tuple(item.isTicked(), item.isSelected(), item.isVisible(), item.tag, item.groupNumber()),
                      std::tuple(wanted.ticked, wanted.selected, wanted.visible(), wanted.tag, wanted.group));
            const ResultGroup& group = model_.groupOf(id);
            EXPECT_EQ(group.number, wanted.group);
            EXPECT_EQ(group.approximate, reference_.approximate[wanted.group]);
            EXPECT_EQ(group.joinedByHand, reference_.byHand[wanted.group]);
            EXPECT_EQ(numbersOf(group.members), reference_.members(wanted.group));
        }
    }

    void expectSameRows()
    {
        std::vector<ItemId> rows, walked, inRuns;
        for (Row row = 0; row < model_.rowCount(); ++row) {
            rows.push_back(model_.itemAt(row));
            EXPECT_EQ(model_.rowOf(rows.back()), row);
        }
        EXPECT_EQ(numbersOf(rows), reference_.rows());
        model_.forEachRow([&](ItemId id) { walked.push_back(id); });
        EXPECT_EQ(walked, rows);
        model_.forEachRun([&](std::span<const ItemId> run) {
            EXPECT_EQ(model_.runAt(*model_.rowOf(run.back())), (RowRange{*model_.rowOf(run[0]), Row(run.size())}));
            inRuns.insert(inRuns.end(), run.begin(), run.end());
            return true;
        });
        EXPECT_EQ(inRuns, rows);
        for (std::uint32_t number = 0; number < model_.idLimit(); ++number)
            EXPECT_EQ(model_.rowOf(idOf(number)).has_value(), reference_.items[number].visible());
    }

    void expectSameCounts()
    {
        const Numbers alive = reference_.alive();
        std::set<std::uint32_t> groups;
        for (const auto number : alive)
            groups.insert(reference_.items[number].group);
        EXPECT_EQ(model_.itemCount(), alive.size());
        EXPECT_EQ(model_.hiddenCount(), alive.size() - reference_.rows().size());
        EXPECT_EQ(model_.groupCount(), groups.size());
        EXPECT_EQ(model_.hidingFlags(), reference_.hidingFlags);
        EXPECT_EQ(model_.inView(Mark::ticked), reference_.sum(&ReferenceResults::Item::ticked, false));
        EXPECT_EQ(model_.everywhere(Mark::ticked), reference_.sum(&ReferenceResults::Item::ticked, true));
        EXPECT_EQ(model_.inView(Mark::selected), reference_.sum(&ReferenceResults::Item::selected, false));
        EXPECT_EQ(model_.everywhere(Mark::selected), reference_.sum(&ReferenceResults::Item::selected, true));
    }

    void expectGroupsTogether(const std::vector<ItemId>& alive)
    {
        std::set<std::uint32_t> ended;
        for (std::size_t i = 1; i < alive.size(); ++i) {
            const std::uint32_t before = model_.item(alive[i - 1]).groupNumber();
            if (before == model_.item(alive[i]).groupNumber())
                continue;
            ended.insert(before);
            EXPECT_FALSE(ended.contains(model_.item(alive[i]).groupNumber())) << "apart";
        }
    }

    std::mt19937 random_;
    ResultsModel model_;
    MirrorView mirror_{model_};
    ReferenceResults reference_;
    std::ostringstream log_;
};

TEST(ResultsRandom, PlainListsAndAFollowingViewAgreeAfterEveryOperation)
{
    for (unsigned seed = 1; seed <= 400 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomResults(seed).run(60);
    }
}

}  // namespace
}  // namespace kelvane
