#include "cleanup/delete_pass.h"

#include <gtest/gtest.h>

#include "cleanup/pass_world.h"
#include "support/real_files.h"

namespace kelvane {
namespace {

using testing::PassWorld;

struct DeleteWorld : PassWorld {
    explicit DeleteWorld(const std::string& items)
    {
        write("a");
        for (const char item : items) {
            write({item});
            recycle({item}, "a");
        }
    }
};

TEST(DeletePass, TakesItemsAwayBatchByBatchAndTellsTheJournalFirst)
{
    DeleteWorld world("bcd");
    world.plan.commands[1].action = CleanupAction::deletePermanently;
    world.options.batch = 2;
    const PassOutcome outcome = world.removeAll();
    EXPECT_EQ(world.told, "b:done trashed c:done d:done trashed ");
    EXPECT_EQ(world.left(), "a,trash,trash/b,trash/d");
    EXPECT_EQ(world.journal.told(), "intend b; intend c; flush; placing b; done b trashed; done c; "
                                    "intend d; flush; placing d; done d trashed");
    EXPECT_TRUE(outcome.recycled);
    EXPECT_EQ(outcome.freed, 12u);
    EXPECT_EQ(outcome.cancel, CancelState::running);
}

TEST(DeletePass, ReadsTheCodesOfTheShell)
{
    if (!testing::openFilesMove())
        GTEST_SKIP() << "here a removed file keeps its name while it is held";
    DeleteWorld world("bcdefg");
    const Error denied{ErrorKind::accessDenied, 5, "denied"};
    world.trash.answers["b"] = {static_cast<std::int32_t>(0x80070005), denied, {}};
    world.trash.answers["c"] = {removal_code::skippedByPerson, {}, {}};
    world.trash.answers["d"] = {removal_code::ignoredA, {}, {}};
    world.trash.answers["e"] = {removal_code::ignoredB, {}, {}};
    world.trash.answers["f"] = {-1, Error{ErrorKind::notSupported, 0, "a memory card"}, {}};
    world.trash.afterEach = [&](const std::string& name) {
        if (name == "e")
            world.tree.remove("e");
    };
    const PassOutcome outcome = world.removeAll();
    EXPECT_EQ(world.told, "b:failed system c:failed system d:notReached e:done f:failed noTrash g:done trashed ");
    EXPECT_EQ(outcome.errors, 3u);
    EXPECT_EQ(outcome.succeeded, 2u);
    EXPECT_EQ(world.ended_[0].code, static_cast<std::int32_t>(0x80070005));
    EXPECT_EQ(textOf(*world.ended_[4].failure), "its volume has no trash: a memory card");
    EXPECT_EQ(outcome.undecided, 0u);
}

TEST(DeletePass, LeavesAloneWhatChangesBetweenGuardAndTurn)
{
    DeleteWorld world("bcd");
    world.tree.write("b", "new contents");
    world.trash.afterEach = [&](const std::string& name) {
        if (name == "c")
            world.tree.write("d", "new contents");
    };
    world.removeAll();
    EXPECT_EQ(world.told, "b:failed changed c:done trashed d:failed changed ");
    EXPECT_EQ(world.tree.read("d"), "new contents");
    EXPECT_EQ(world.journal.told(), "intend c; intend d; flush; placing c; done c trashed; notDone d");
}

TEST(DeletePass, KeepsTheLastNameOfAFile)
{
    if (!testing::openFilesMove())
        GTEST_SKIP() << "here a removed file keeps its name while it is held";
    PassWorld world;
    world.write("a");
    for (const char* name : {"b", "c"}) {
        world.tree.hardLink(name, "a");
        world.list(name);
    }
    world.recycle("b", "a").sameFile = true;
    world.recycle("c", "a").sameFile = true;
    world.trash.afterEach = [&](const std::string& name) {
        if (name == "b")
            world.tree.remove("a");
    };
    world.removeAll();
    EXPECT_EQ(world.told, "b:done trashed c:failed keptChanged ");
    EXPECT_EQ(world.tree.read("c"), "same");
}

TEST(DeletePass, StopsWithTheEngineOrThePerson)
{
    DeleteWorld aborted("bcd");
    aborted.trash.abortsAt = "c";
    aborted.removeAll();
    EXPECT_EQ(aborted.told, "b:done trashed c:notReached d:notReached ");
    EXPECT_EQ(aborted.outcome.cancel, CancelState::requested);
    EXPECT_EQ(aborted.journal.lines.back(), "notDone d");
    EXPECT_TRUE(aborted.questions.asked.empty());

    for (const bool stops : {true, false}) {
        DeleteWorld world("bcd");
        world.questions.stops = stops;
        world.questions.carryOn = [&] { world.cancel.reset(); };
        world.trash.afterEach = [&](const std::string& name) {
            if (name == "b")
                world.cancel.cancel();
        };
        world.removeAll();
        EXPECT_EQ(world.told, stops ? "b:done trashed c:notReached d:notReached "
                                    : "b:done trashed c:done trashed d:done trashed ");
        EXPECT_EQ(world.questions.asked.size(), 1u);
        EXPECT_EQ(world.outcome.cancel, stops ? CancelState::requested : CancelState::running);
    }
    DeleteWorld failing("b");
    failing.trash.ok = false;
    failing.removeAll();
    EXPECT_TRUE(failing.outcome.engineFailed);
    EXPECT_EQ(failing.outcome.cancel, CancelState::requested);
    EXPECT_EQ(failing.told, "b:done trashed ");
}

TEST(DeletePass, DoesNothingThatTheJournalCannotTell)
{
    const struct {
        const char *fails, *told, *left;
    } rows[] = {
        {"intend c", "b:failed journal c:notReached d:notReached ", "a,b,c,d,trash"},
        {"flush", "b:failed journal c:notReached d:notReached ", "a,b,c,d,trash"},
        {"placing c", "b:done trashed c:failed journal d:notReached ", "a,c,d,trash,trash/b"},
        {"done b", "b:done trashed c:notReached d:notReached ", "a,c,d,trash,trash/b"},
    };
    for (const auto& row : rows) {
        DeleteWorld world("bcd");
        world.journal.failsAt = row.fails;
        world.removeAll();
        EXPECT_EQ(world.told, row.told) << row.fails;
        EXPECT_EQ(world.left(), row.left) << row.fails;
        EXPECT_TRUE(world.outcome.journalError);
        EXPECT_EQ(world.outcome.cancel, CancelState::running);
    }
}

TEST(DeletePass, ReportsWhatVanishedInAFailureAsUndecided)
{
    if (!testing::openFilesMove())
        GTEST_SKIP() << "here a removed file keeps its name while it is held";
    DeleteWorld world("b");
    world.trash.answers["b"] = {-1, Error{ErrorKind::io, 5, "broken"}, {}};
    world.trash.afterEach = [&](const std::string&) { world.tree.remove("b"); };
    world.removeAll();
    EXPECT_EQ(world.told, "b:failed system ");
    EXPECT_EQ(world.outcome.undecided, 1u);
    EXPECT_EQ(world.journal.told(), "intend b; flush");
}

}  // namespace
}  // namespace kelvane
