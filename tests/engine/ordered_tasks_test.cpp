#include "engine/ordered_tasks.h"

#include <gtest/gtest.h>

#include <stdexcept>

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

}  // namespace
}  // namespace kelvane
