#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "support/linux_cleanup_world.h"

namespace kelvane {
namespace {

using testing::CleanupWorld;
using testing::Fault;
using testing::SeenTree;
using testing::WorldMode;
using testing::WorldRun;

constexpr auto linkAction = CleanupAction::link;

const WorldMode modes[] = {
    {"recycle", CleanupAction::recycle},
    {"delete", CleanupAction::deletePermanently},
    {"hard", linkAction, LinkKind::hard},
    {"hard, no exchange", linkAction, LinkKind::hard, false},
    {"symbolic", linkAction, LinkKind::symbolic},
    {"symbolic, no exchange", linkAction, LinkKind::symbolic, false},
    {"clone", linkAction, LinkKind::clone, true, true},
};

class KillMatrix : public ::testing::TestWithParam<WorldMode> {
protected:
    KillMatrix()
    {
        world_.faults.onFault([] { ::raise(SIGKILL); });
    }

    // Does the work in a child that is killed before an operation, a write half way; whether it got that far.
    [[nodiscard]] bool killedAt(int operation, const std::function<void()>& work)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            world_.faults.fail(Fault::killed, operation);
            work();
            ::_exit(0);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) ? WTERMSIG(status) == SIGKILL : WEXITSTATUS(status) == 0);
        return WIFSIGNALED(status);
    }

    // A run whose end nobody heard of.
    [[nodiscard]] WorldRun lastRun()
    {
        WorldRun run;
        run.report.plan = world_.plan(GetParam());
        const auto numbers = world_.journals().list();
        if (numbers && !numbers->empty())
            run.number = numbers->back();
        return run;
    }

    CleanupWorld world_;
};

TEST_P(KillMatrix, LeavesNothingHalfDone)
{
    bool killed = true;
    for (int operation = 1; killed && !HasFailure(); ++operation) {
        SCOPED_TRACE("killed at operation " + std::to_string(operation));
        world_.build(testing::smallWorld(GetParam()));
        const SeenTree before = world_.look();
        killed = killedAt(operation, [&] { static_cast<void>(world_.clean(GetParam())); });
        const WorldRun run = lastRun();
        EXPECT_EQ(world_.unsafe(before, run.report.plan) + world_.journalUntrue(before, run, false), "");
        static_cast<void>(killedAt(1 + operation % 40, [&] { static_cast<void>(world_.settle()); }));
        EXPECT_EQ(world_.unsafe(before, run.report.plan), "") << "settling was killed as well";
        EXPECT_EQ(world_.badlySettled(before, run), "");
    }
}

TEST_P(KillMatrix, CanTakeBackWhatWasHalfTakenBack)
{
    if (GetParam().action == CleanupAction::deletePermanently)
        GTEST_SKIP() << "there is nothing to take back";
    bool killed = true;
    for (int operation = 1; killed && !HasFailure(); ++operation) {
        SCOPED_TRACE("killed at operation " + std::to_string(operation));
        world_.build(testing::smallWorld(GetParam()));
        const SeenTree before = world_.look();
        const WorldRun run = world_.clean(GetParam());
        ASSERT_TRUE(run.number);
        killed = killedAt(operation, [&] { static_cast<void>(world_.undo(*run.number)); });
        EXPECT_EQ(world_.unsafe(before, run.report.plan, true), "");
        EXPECT_TRUE(world_.settle());
        EXPECT_EQ(world_.unsafe(before, run.report.plan, true) + world_.strays(before), "");
        EXPECT_EQ(world_.badlyUndone(before, run), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, KillMatrix, ::testing::ValuesIn(modes),
                         [](const auto& tested) { return "mode" + std::to_string(tested.index); });

}  // namespace
}  // namespace kelvane
