#include "engine/ordered_tasks.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

namespace kelvane {
namespace {

void nothing() {}

TEST(OrderedTasks, ResultsAreThereInOrder)
{
    CancelFlag cancel;
    std::vector<std::size_t> results(5000);
    std::atomic<int> made{0};
    OrderedTasks tasks(results.size(), 4, [&] {
        ++made;
        return [&](std::size_t number) { results[number] = number * number; };
    });
    for (std::size_t i = 0; i < results.size(); ++i) {
        ASSERT_TRUE(tasks.await(i, cancel, nothing));
        ASSERT_EQ(results[i], i * i);
    }
    EXPECT_LE(made, 4);
}

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

TEST(OrderedTasks, ACancelledWaitEndsSoon)
{
    CancelFlag cancel;
    std::atomic<bool> released{false};
    OrderedTasks tasks(2, 1, [&] { return [&](std::size_t) { released.wait(false); }; });
    int looks = 0;
    const bool done = tasks.await(0, cancel, [&] {
        if (++looks == 2)
            cancel.cancel();
    });
    EXPECT_FALSE(done);
    released = true;
    released.notify_all();
}

TEST(OrderedTasks, EndingEarlyBeginsNoFurtherTask)
{
    std::atomic<int> begun{0};
    {
        CancelFlag cancel;
        OrderedTasks tasks(1'000'000, 2, [&] {
            return [&](std::size_t) {
                ++begun;
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            };
        });
        EXPECT_TRUE(tasks.await(0, cancel, nothing));
    }
    EXPECT_LT(begun, 1000);
}

}  // namespace
}  // namespace kelvane
