#include "platform/priority.h"

#include <stdexcept>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

int ownNice()
{
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)));
}

TEST(Priority, LowersTheWorkAndWhatItStartsButNotTheCaller)
{
    const int before = ownNice();
    int inside = -100;
    int ofChild = -100;

    makeLinuxPriority()->runLowered([&] {
        inside = ownNice();
        std::thread([&] { ofChild = ownNice(); }).join();
    });

    EXPECT_EQ(inside, std::max(before, 10));
    EXPECT_EQ(ofChild, inside);
    EXPECT_EQ(ownNice(), before);
}

TEST(Priority, NeverRaisesAPriorityThatIsLowerStill)
{
    std::thread([] {
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), 15);
        int inside = -100;
        makeLinuxPriority()->runLowered([&] { inside = ownNice(); });
        EXPECT_EQ(inside, 15);
    }).join();
}

TEST(Priority, PassesAnExceptionOn)
{
    const int before = ownNice();
    EXPECT_THROW(makeLinuxPriority()->runLowered([] { throw std::runtime_error("work failed"); }), std::runtime_error);
    EXPECT_EQ(ownNice(), before);
}

}  // namespace
}  // namespace kelvane
