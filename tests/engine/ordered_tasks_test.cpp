#include "engine/ordered_tasks.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "engine/background_work.h"

namespace kelvane {
namespace {

void nothing() {}

TEST(OrderedTasks, AFailedTaskFailsTheWait)
{
    CancelFlag cancel;
    OrderedTasks tasks(10, 2, [] {
        return [](std::size_t number) {
            if (number == 3)
                throw std::runtime_error("task");
        };
    });
    const auto awaitAll = [&] {
        for (std::size_t i = 0; i < 10; ++i)
            static_cast<void>(tasks.await(i, cancel, nothing));
    };
    EXPECT_THROW(awaitAll(), std::runtime_error);
}

// A process may be at the limit of its threads.
TEST(OrderedTasks, WithoutThreadsTheOneThatWaitsDoesTheTasks)
{
    CancelFlag cancel;
    std::vector<std::size_t> done;
    OrderedTasks tasks(10, 0, [&done] { return [&done](std::size_t number) { done.push_back(number); }; });
    EXPECT_TRUE(tasks.await(3, cancel, nothing));
    EXPECT_EQ(done, (std::vector<std::size_t>{0, 1, 2, 3}));
    EXPECT_TRUE(tasks.await(2, cancel, nothing));
    EXPECT_EQ(done.size(), 4u);
    cancel.cancel();
    EXPECT_FALSE(tasks.await(9, cancel, nothing));
    EXPECT_EQ(done.size(), 4u);
}

TEST(BackgroundWork, WithoutThreadsTheWorkIsDoneWhileItIsSettled)
{
    CancelFlag cancel;
    BackgroundWork work(0);
    std::vector<int> done;
    for (int i = 0; i < 5; ++i)
        work.add([&done, &cancel, i] {
            done.push_back(i);
            if (i == 3)
                cancel.cancel();
        });
    std::uint64_t seen = 0;
    EXPECT_FALSE(work.settle(cancel, [&seen](std::uint64_t count) { seen = count; }));
    EXPECT_EQ(done, (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(seen, 4u);
    cancel.reset();
    EXPECT_TRUE(work.settle(cancel, [](std::uint64_t) {}));
    EXPECT_EQ(done.back(), 4);
}

}  // namespace
}  // namespace kelvane
