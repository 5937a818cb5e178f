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
    int inside = -100, ofChild = -100;
    const auto work = [&] {
        inside = ownNice();
        std::thread([&] { ofChild = ownNice(); }).join();
        throw std::runtime_error("work failed");
    };

    EXPECT_THROW(makeLinuxPriority()->runLowered(work), std::runtime_error);

    EXPECT_EQ(inside, std::max(before, 10));
    EXPECT_EQ(ofChild, inside);
    EXPECT_EQ(ownNice(), before);
}

}  // namespace
}  // namespace kelvane
