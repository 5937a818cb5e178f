#include <gtest/gtest.h>

#include <cerrno>

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
    {"hard, three names", linkAction, LinkKind::hard, true, false, 3},
    {"symbolic", linkAction, LinkKind::symbolic},
    {"symbolic, no exchange", linkAction, LinkKind::symbolic, false},
    {"clone", linkAction, LinkKind::clone, true, true},
};

const Error failures[] = {
    {ErrorKind::accessDenied, EACCES, "EACCES"},
    {ErrorKind::io, EIO, "EIO"},
    {ErrorKind::io, ENOSPC, "ENOSPC"},
    {ErrorKind::io, EMLINK, "EMLINK"},
    {ErrorKind::io, EXDEV, "EXDEV"},
    {ErrorKind::io, EROFS, "EROFS"},
    {ErrorKind::io, EBUSY, "EBUSY"},
    {ErrorKind::notFound, ENOENT, "ENOENT"},
};

class FaultMatrix : public ::testing::TestWithParam<WorldMode> {
protected:
    void SetUp() override
    {
        if (GetParam().action == CleanupAction::recycle && !world_.trash())
            GTEST_SKIP() << "the tests have no trash of their own here";
    }

    // Fails operation after operation of `work` on a tree made by `prepare`, until it meets no fault any more.
    template <class Prepare, class Work>
    void failEach(Fault fault, const Error& error, Prepare prepare, Work work)
    {
        bool failed = true;
        for (int operation = 1; failed && !HasFailure(); ++operation) {
            world_.build(testing::smallWorld(GetParam()));
            const SeenTree before = world_.look();
            const WorldRun run = prepare();
            world_.faults.fail(fault, operation, error);
            const std::string complaints = work(before, run);
            failed = world_.faults.failed();
            EXPECT_EQ(complaints, "") << "operation " << operation << ", " << world_.faults.struck() << ", "
                                      << error.detail;
        }
    }

    CleanupWorld world_;
};

// Whatever is complained of when the run ended is told, and whatever of what is left of it.
TEST_P(FaultMatrix, LosesNothingWhateverOperationFails)
{
    const auto clean = [&](bool tellsTruth) {
        return [this, tellsTruth](const SeenTree& before, const WorldRun&) {
            const WorldRun run = world_.clean(GetParam());
            std::string complaints = world_.unsafe(before, run.report.plan) + world_.journalUntrue(before, run, false);
            if (tellsTruth)
                complaints += world_.untrue(before, run);
            if (!world_.faults.failed() && run.report.pass.errors != 0)
                complaints += "errors without a fault\n";
            return complaints + world_.badlySettled(before, run);
        };
    };
    const auto nothing = [] { return WorldRun(); };
    for (const Error& error : failures)
        failEach(Fault::once, error, nothing, clean(true));
    failEach(Fault::afterwards, failures[1], nothing, clean(false));
}

TEST_P(FaultMatrix, LosesNothingWhateverOperationOfTakingBackFails)
{
    if (GetParam().action == CleanupAction::deletePermanently)
        GTEST_SKIP() << "there is nothing to take back";
    const auto prepare = [&] {
        world_.faults.stop();
        return world_.clean(GetParam());
    };
    const auto undo = [&](const SeenTree& before, const WorldRun& run) {
        static_cast<void>(world_.undo(run.number.value()));
        world_.faults.stop();
        // A copy that is there without some of its metadata is told of, and is no failure.
        const auto lacksSome = [](const UndoneItem& item) { return item.metadataNotKept.has_value(); };
        const bool told = std::any_of(world_.undone().begin(), world_.undone().end(), lacksSome);
        if (told || world_.faults.struck() == "set metadata")
            return std::string(told == (world_.faults.struck() == "set metadata") ? "" : "lost metadata is not told");
        const std::string complaints = world_.unsafe(before, run.report.plan, true);
        static_cast<void>(world_.settle());
        return complaints + world_.strays(before) + world_.badlyUndone(before, run);
    };
    for (const Error& error : {failures[1], failures[2]})
        failEach(Fault::once, error, prepare, undo);
}

INSTANTIATE_TEST_SUITE_P(Modes, FaultMatrix, ::testing::ValuesIn(modes),
                         [](const auto& tested) { return "mode" + std::to_string(tested.index); });

}  // namespace
}  // namespace kelvane
