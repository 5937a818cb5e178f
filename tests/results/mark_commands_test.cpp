#include "results/mark_commands.h"

#include <gtest/gtest.h>

#include "results/marking_world.h"
#include "results/status_texts.h"

namespace kelvane {
namespace {

using Answer = CommandAnswer;

class MarkCommands : public ::testing::Test {
protected:
    CommandAnswer give(MarkCommand command) { return carryOut(command, world_.model, stored_); }

    void mark(std::initializer_list<Row> rows, Mark mark)
    {
        for (const Row row : rows) {
            const ItemId id = world_.model.itemAt(row);
            world_.model.mark(std::span(&id, 1), mark, true);
        }
    }

    [[nodiscard]] std::string groups() const
    {
        std::string numbers;
        world_.model.forEachRow([&](ItemId id) { numbers += std::to_string(world_.model.item(id).groupNumber()); });
        return numbers;
    }

    testing::MarkingWorld world_{{{"/a", 1, 10}, {"/A", 1, 20}, {"/c", 2, 5000}, {"/d", 2, 6000}, {"/e", 3, 1}}};
    StoredMarks stored_;
};

TEST_F(MarkCommands, StoredMarksComeBackByPathAndCase)
{
    EXPECT_EQ(give(MarkCommand::storeMarks), Answer{TextId::nothingTicked});
    EXPECT_EQ(give(MarkCommand::tickStored), Answer{TextId::noMarksStored});
    mark({1, 2}, Mark::ticked);
    EXPECT_EQ(give(MarkCommand::storeMarks), Answer{TextId::marksStored});
    give(MarkCommand::clearTicks);
    mark({4}, Mark::ticked);
    EXPECT_EQ(give(MarkCommand::tickStored), Answer{});
    EXPECT_EQ(world_.marks(), "-x x- x") << "on top of those ticked since; /a is another file than /A";
    EXPECT_EQ(give(MarkCommand::untickStored), Answer{});
    EXPECT_EQ(world_.marks(), "-- -- x");
    world_.model.clear();
    world_.add({"/c", 7});
    give(MarkCommand::tickStored);
    EXPECT_EQ(world_.marks(), "x") << "in another list";
    give(MarkCommand::clearTicks);
    EXPECT_EQ(give(MarkCommand::storeMarks), Answer{TextId::nothingTicked});
    EXPECT_TRUE(stored_.empty()) << "those stored before are gone";
}

TEST_F(MarkCommands, WhatIsOutOfViewKeepsItsTicks)
{
    EXPECT_EQ(give(MarkCommand::showTicked), Answer{TextId::nothingTicked});
    EXPECT_EQ(world_.model.hidingFlags(), 0u);
    mark({0, 3}, Mark::ticked);
    EXPECT_EQ(give(MarkCommand::showTicked), Answer{});
    EXPECT_EQ(groups(), "12");
    EXPECT_EQ(world_.model.hidingFlags(), hiding_flag::tickedOnly);
    give(MarkCommand::invertTicks);
    EXPECT_EQ(give(MarkCommand::showTicked), Answer{TextId::nothingTicked});
    give(MarkCommand::showAll);
    EXPECT_EQ(world_.marks(), "-- -- -");
    give(MarkCommand::invertTicks);
    EXPECT_EQ(give(MarkCommand::showTicked), Answer{});
    EXPECT_EQ(world_.model.hidingFlags(), 0u) << "nothing was hidden";
}

TEST_F(MarkCommands, SelectedItemsAreRemovedRegroupedAndMerged)
{
    EXPECT_EQ(give(MarkCommand::regroupSelection), (Answer{{}, true}));
    EXPECT_EQ(give(MarkCommand::mergeWithPrevious), (Answer{{}, true}));
    mark({0, 1}, Mark::selected);
    EXPECT_EQ(give(MarkCommand::regroupSelection), (Answer{{}, true})) << "of one group only";
    EXPECT_EQ(give(MarkCommand::mergeWithPrevious), (Answer{{}, true})) << "none stands before";

    world_.model.clearSelection();
    world_.model.dropLoneSurvivors(true);
    mark({1, 2}, Mark::selected);
    EXPECT_EQ(give(MarkCommand::regroupSelection), Answer{});
    EXPECT_EQ(groups(), "1113") << "/d was left alone";
    world_.model.undo();
    EXPECT_EQ(groups(), "11223");

    world_.model.clearSelection();
    mark({3}, Mark::selected);
    EXPECT_EQ(give(MarkCommand::mergeWithPrevious), Answer{});
    EXPECT_EQ(groups(), "11113") << "/a stays although /A went along";
    world_.model.undo();
    world_.model.clearSelection();
    mark({2}, Mark::selected);
    give(MarkCommand::removeSelection);
    EXPECT_EQ(groups(), "113") << "with the last one of its group";
}

// A column with group numbers shows the new one although the old one was read.
TEST_F(MarkCommands, ARegroupedItemsCachedGroupNumberFollows)
{
    const PropRef group = world_.scan.properties.catalogue().stock(StockProperty::groupId);
    const ItemId moved = world_.model.itemAt(2);
    const auto number = [&] { return world_.scan.properties.cached(world_.model.file(moved), group).number(); };
    EXPECT_EQ(number(), 2);
    mark({0, 2}, Mark::selected);
    give(MarkCommand::regroupSelection);
    EXPECT_EQ(number(), 1);
    world_.model.undo();
    EXPECT_EQ(number(), 2);
}

TEST_F(MarkCommands, TheStatusBarCountsWhatIsInView)
{
    world_.add({"/folder", 3, 4096, 1, {}, FileKind::folder});
    EXPECT_EQ(markedText(world_.model), std::nullopt);
    EXPECT_EQ(itemsText(world_.model), u"6 items");
    mark({0, 2, 3, 5}, Mark::ticked);
    mark({1}, Mark::selected);
    EXPECT_EQ(markedText(world_.model), u"Marked 4 (10.8 KB)") << "11010 bytes: a folder has no size";
    EXPECT_EQ(itemsText(world_.model), u"6 items");
    mark({2}, Mark::selected);
    EXPECT_EQ(itemsText(world_.model), u"Selected 2 (5020 bytes)");
    const ItemId hidden = world_.model.itemAt(2);
    world_.model.hide(std::span(&hidden, 1), hiding_flag::filter);
    EXPECT_EQ(markedText(world_.model), u"Marked 3 (6010 bytes)");
    EXPECT_EQ(itemsText(world_.model), u"5 items");
    world_.model.useTickBoxes(false);
    EXPECT_EQ(markedText(world_.model), std::nullopt);
    world_.model.clear();
    EXPECT_EQ(markedText(world_.model), u"Empty pane");
    EXPECT_EQ(itemsText(world_.model), std::nullopt);
}

}  // namespace
}  // namespace kelvane
