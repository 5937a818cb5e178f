#include "text/worker_pool.h"

#include <thread>

#include "support/scripted_workers.h"

namespace kelvane {
namespace {

using testing::ScriptedWorkers;

WorkerAnswer ending(WorkerEnd end)
{
    return {end, {}, {}};
}

ScriptedWorkers::Script inTurn(std::vector<WorkerEnd> ends)
{
    auto at = std::make_shared<std::size_t>(0);
    return [=](auto, const auto&) { return ending(ends.at((*at)++)); };
}

std::vector<WorkerEnd> outcomes(ScriptedWorkers& workers, int requests)
{
    const CancelFlag never;
    WorkerPool pool(workers, {}, 1);
    std::vector<WorkerEnd> ends;
    for (int i = 0; i < requests; ++i) {
        const auto answer = pool.ask({}, {}, never);
        ends.push_back(answer ? answer->end : WorkerEnd::cancelled);
    }
    return ends;
}

TEST(WorkerPool, OneWorkerServesUntilItBreaks)
{
    using enum WorkerEnd;
    ScriptedWorkers workers(inTurn({answered, notOpened, timedOut, answered}));
    EXPECT_EQ(outcomes(workers, 4), (std::vector{answered, notOpened, timedOut, answered}));
    EXPECT_EQ(workers.starts, 2);
    EXPECT_EQ(workers.running, 0);
}

// What an earlier document did to a worker is not laid at the door of the next one.
TEST(WorkerPool, ABreakdownOfAUsedWorkerIsPutToAFreshOne)
{
    using enum WorkerEnd;
    ScriptedWorkers innocent(inTurn({answered, died, answered}));
    EXPECT_EQ(outcomes(innocent, 2), (std::vector{answered, answered}));
    ScriptedWorkers guilty(inTurn({answered, tooMuchMemory, died, died, answered}));
    EXPECT_EQ(outcomes(guilty, 4), (std::vector{answered, died, died, answered}));
    EXPECT_EQ(guilty.asked, 5);
}

TEST(WorkerPool, AnAnswerThatMakesNoSenseEndsItsWorker)
{
    ScriptedWorkers workers(inTurn(std::vector(3, WorkerEnd::answered)));
    WorkerPool pool(workers, {}, 1);
    const CancelFlag never;
    const auto answer = pool.ask({}, {}, never, [](auto) { return false; });
    ASSERT_TRUE(answer.ok());
    EXPECT_EQ(answer->end, WorkerEnd::died);
    EXPECT_EQ(workers.running, 0);
    EXPECT_EQ(pool.ask({}, {}, never)->end, WorkerEnd::answered);
}

TEST(WorkerPool, AFailureToStartIsToldAndTriedAgain)
{
    ScriptedWorkers workers(inTurn({WorkerEnd::answered}));
    workers.startError = Error{ErrorKind::invalid, 0, ""};
    WorkerPool pool(workers, {}, 1);
    const CancelFlag never;
    EXPECT_EQ(pool.ask({}, {}, never).error().kind, ErrorKind::invalid);
    workers.startError.reset();
    EXPECT_TRUE(pool.ask({}, {}, never).ok());
}

TEST(WorkerPool, WhoWaitsForAWorkerToStartCanBeCancelledAndTheProgramIsNotToBlame)
{
    ScriptedWorkers workers(inTurn({WorkerEnd::answered}));
    WorkerPool pool(workers, {}, 1);
    workers.startsNever = true;
    for (int i = 0; i < 4; ++i) {
        CancelFlag cancel;
        std::thread person([&] {
            while (workers.starts == i)
                std::this_thread::yield();
            cancel.cancel();
        });
        const auto answer = pool.ask({}, {}, cancel);
        person.join();
        ASSERT_TRUE(answer.ok());
        EXPECT_EQ(answer->end, WorkerEnd::cancelled);
    }
    workers.startsNever = false;
    const CancelFlag never;
    EXPECT_EQ(pool.ask({}, {}, never)->end, WorkerEnd::answered);
}

TEST(WorkerPool, AProgramThatIsMissingOrNeverStartsIsGivenUp)
{
    const CancelFlag never;
    const std::pair<ErrorKind, int> cases[] = {
        {ErrorKind::notFound, 1}, {ErrorKind::notSupported, 1}, {ErrorKind::invalid, 3}, {ErrorKind::tooManyOpen, 5}};
    for (const auto& [kind, starts] : cases) {
        ScriptedWorkers workers(inTurn({}));
        workers.startError = Error{kind, 0, "why"};
        WorkerPool pool(workers, {}, 1);
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(pool.ask({}, {}, never).error().detail, "why");
        EXPECT_EQ(workers.starts, starts);
    }
}

TEST(WorkerPool, AMissingWallIsTold)
{
    ScriptedWorkers workers(inTurn({WorkerEnd::died, WorkerEnd::died}));
    WorkerPool pool(workers, {}, 1);
    const CancelFlag never;
    EXPECT_EQ(pool.warning(), "");
    static_cast<void>(pool.ask({}, {}, never));
    EXPECT_EQ(pool.warning(), "");
    workers.walls.files = workers.walls.memory = false;
    static_cast<void>(pool.ask({}, {}, never));
    EXPECT_EQ(pool.warning(), "kelvane-worker reads files with less protection than it could have; this system lacks a "
                              "wall around files, a limit of memory");
}

TEST(WorkerPool, ManyCallersShareFewWorkers)
{
    ScriptedWorkers workers([](auto request, const auto&) {
        std::this_thread::yield();
        return WorkerAnswer{WorkerEnd::answered, {request.begin(), request.end()}, {}};
    });
    WorkerPool pool(workers, {}, 3);
    const CancelFlag never;
    std::atomic<int> right = 0;
    std::vector<std::thread> callers;
    for (unsigned char id = 0; id < 8; ++id) {
        callers.emplace_back([&, id] {
            for (int i = 0; i < 100; ++i) {
                const std::byte mine{id};
                const auto answer = pool.ask({&mine, 1}, {}, never);
                right += answer && answer->message == std::vector{mine};
            }
        });
    }
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(right, 800);
    EXPECT_LE(workers.mostRunning, 3);
}

TEST(WorkerPool, WhoWaitsForAWorkerCanBeCancelled)
{
    std::atomic<bool> busy = false, release = false;
    ScriptedWorkers workers([&](auto, const auto&) {
        for (busy = true; !release;)
            std::this_thread::yield();
        return ending(WorkerEnd::answered);
    });
    WorkerPool pool(workers, {}, 1);
    const CancelFlag never;
    std::thread first([&] { EXPECT_EQ(pool.ask({}, {}, never)->end, WorkerEnd::answered); });
    while (!busy)
        std::this_thread::yield();
    CancelFlag cancel;
    std::thread second([&] { EXPECT_EQ(pool.ask({}, {}, cancel)->end, WorkerEnd::cancelled); });
    cancel.cancel();
    second.join();
    release = true;
    first.join();
    EXPECT_EQ(workers.asked, 1);
}

}  // namespace
}  // namespace kelvane
