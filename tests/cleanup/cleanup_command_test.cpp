#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/filled_text.h"
#include "cleanup/run_world.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RunWorld;

TEST(CleanupCommand, AsksInOrderAndStopsWhereItIsTold)
{
    RunWorld world({{"/a", "/b"}, {"/c", "/d"}});
    const ItemId hidden = world.model.itemAt(3);
    world.model.hide(std::span(&hidden, 1), hiding_flag::filter);
    EXPECT_FALSE(cleanUp(world.context, world.options, world.cancel).ran);
    EXPECT_THAT(
        world.questions.asked,
        ElementsAre("Some items are filtered out of view\nShall we operate on ALL items, including those hidden?",
                    "choose"));

    world.questions = {};
    world.questions.hiddenToo = true;
    world.questions.choice = CleanupChoice::saveResults;
    world.options.expert = true;
    EXPECT_FALSE(cleanUp(world.context, world.options, world.cancel).ran);
    EXPECT_EQ(world.questions.asked.back(), "choose, links offered");
    EXPECT_EQ(world.questions.saved, 1);

    world.questions = {};
    world.questions.choice = CleanupChoice::createLinks;
    world.options.noHardLinks = world.options.noSymbolicLinks = true;
    const CleanupReport off = cleanUp(world.context, world.options, world.cancel);
    EXPECT_EQ(off.plan.skipped.size(), 2u);
    EXPECT_THAT(world.questions.statuses,
                ElementsAre("Linking is possible only for local filesystem & size-identical items"));

    world.questions = {};
    world.questions.choice = CleanupChoice::deleteItems;
    const CleanupReport report = cleanUp(world.context, world.options, world.cancel);
    EXPECT_TRUE(report.ran);
    EXPECT_EQ(report.plan.action, CleanupAction::recycle);
    ASSERT_EQ(report.items.size(), 2u);
    EXPECT_EQ(report.items[1].failure->error.systemCode, 13) << "the pass could open nothing";
    EXPECT_EQ(report.message, u"");
    EXPECT_EQ(world.model.itemCount(), 4u);
    EXPECT_EQ(world.questions.summaries.size(), 1u);
}

TEST(CleanupCommand, WarnsOfGroupsThatWouldLoseEveryItem)
{
    RunWorld world({{"/a", "/b"}, {"/c", "/d"}});
    const ItemId kept = world.model.itemAt(2);
    world.model.mark(std::span(&kept, 1), Mark::ticked, true);
    EXPECT_TRUE(cleanUp(world.context, world.options, world.cancel).refused);
    EXPECT_THAT(world.questions.asked, IsEmpty());
    EXPECT_THAT(world.questions.warnings,
                ElementsAre("Some duplicate groups have all items marked for removal\nPlease ensure that at least one "
                            "item per group is unticked\n(the one you want to keep)"));
    EXPECT_EQ(world.marks(), "xx");
}

TEST(DirectDeletion, TakesTheSelectedIntoTheTrashAndWritesThemAhead)
{
    RunWorld world({{"/a", "/b", "/c", "/d", "/e"}});
    const auto remove = [&](bool expert) { return directDelete(world.context, expert, world.cancel); };
    EXPECT_EQ(remove(false).refused->detail, "This command is only available in expert mode");
    EXPECT_THAT(world.questions.statuses, ElementsAre("This command is only available in expert mode"));
    EXPECT_EQ(remove(true).run, std::nullopt) << "nothing is selected";

    const std::vector<ItemId> selected{world.model.itemAt(0), world.model.itemAt(1), world.model.itemAt(2),
                                       world.model.itemAt(3)};
    world.model.mark(selected, Mark::selected, true);
    world.files.setContents("/b", "another text");
    world.operations.removed = [&](const std::filesystem::path& path) {
        if (testing::posix(path) == "/c")
            return static_cast<std::int32_t>(0x80070005);
        world.files.setContents("/d", "changed meanwhile");
        return 0;
    };
    const DirectDeletion deletion = remove(true);
    EXPECT_EQ(deletion.removed, 1u);
    ASSERT_EQ(deletion.failed.size(), 3u);
    for (std::size_t place = 0; place < 3; ++place) {
        EXPECT_EQ(deletion.failed[place].item, selected[place + 1]);
        EXPECT_FALSE(deletion.failed[place].reason.empty());
    }
    EXPECT_EQ(deletion.failed[0].reason, filledText(textOf(CleanupObstacle::changed)));
    EXPECT_EQ(deletion.failed[2].reason, textOf(because(CleanupFault::changed)));
    EXPECT_EQ(world.model.itemCount(), 4u);
    EXPECT_EQ(world.model.inView(Mark::selected).items, 3u);
    ASSERT_TRUE(deletion.run);
    const auto run = world.journals.read(*deletion.run);
    ASSERT_TRUE(run);
    EXPECT_FALSE(run->ended) << "the device was never asked to keep what was done";
    ASSERT_EQ(run->entries.size(), 3u);
    EXPECT_EQ(run->entries[0].state, EntryState::done);
    EXPECT_EQ(testing::posix(run->entries[0].trashed), "/trash/a");
    EXPECT_EQ(run->entries[1].state, EntryState::notDone);
    EXPECT_EQ(run->entries[2].state, EntryState::notDone);
}

TEST(DirectDeletion, LeavesOpenWhatWentAlthoughTheSystemReportsAFailure)
{
    RunWorld world({{"/a", "/b", "/c"}});
    const std::vector<ItemId> selected{world.model.itemAt(0), world.model.itemAt(1)};
    world.model.mark(selected, Mark::selected, true);
    world.operations.removed = [&](const std::filesystem::path& path) {
        world.files.remove(testing::posix(path));
        return testing::posix(path) == "/a" ? static_cast<std::int32_t>(0x80004005) : removal_code::ignoredA;
    };
    const DirectDeletion deletion = directDelete(world.context, true, world.cancel);
    EXPECT_EQ(deletion.removed, 2u);
    const auto run = world.journals.read(*deletion.run);
    EXPECT_FALSE(run->ended);
    EXPECT_EQ(run->entries[0].state, EntryState::intended);
}

}  // namespace
}  // namespace kelvane
