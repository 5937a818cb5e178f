#include "base/ref.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace kelvane {
namespace {

// Tells its owner when it is ended.
class Counted : public RefCounted<Counted> {
public:
    explicit Counted(int& ended) : ended_(ended) {}
    static void destroy(const Counted* object)
    {
        ++object->ended_;
        delete object;
    }

private:
    int& ended_;
};

TEST(Ref, MovingAndAssigningToItselfKeepTheCount)
{
    int ended = 0;
    Ref<Counted> first(new Counted(ended));
    Ref<Counted> moved = std::move(first);
    EXPECT_FALSE(first);
    const Ref<Counted>& same = moved;
    moved = same;
    EXPECT_EQ(ended, 0);
    const Ref<const Counted> readOnly = moved;
    moved = Ref<Counted>(new Counted(ended));
    EXPECT_EQ(ended, 0) << "the other reference still holds the first object";
    moved = {};
    EXPECT_EQ(ended, 1);
}

TEST(Ref, ManyThreadsEndTheObjectOnce)
{
    int ended = 0;
    {
        Ref<Counted> shared(new Counted(ended));
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([mine = shared] {
                for (int turn = 0; turn < 1000; ++turn)
                    const Ref<Counted> copy = mine;
            });
        shared = {};
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_EQ(ended, 1);
}

}  // namespace
}  // namespace kelvane
