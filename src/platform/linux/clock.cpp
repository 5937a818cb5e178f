#include <time.h>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

class SystemClock final : public Clock {
public:
    std::uint64_t ticks() const override
    {
        timespec time{};
        clock_gettime(CLOCK_MONOTONIC, &time);
        return static_cast<std::uint64_t>(time.tv_sec) * 1000 + static_cast<std::uint64_t>(time.tv_nsec) / 1'000'000;
    }

    FileTime now() const override
    {
        timespec time{};
        clock_gettime(CLOCK_REALTIME, &time);
        return fileTimeFromUnix(time.tv_sec, time.tv_nsec);
    }
};

}  // namespace

std::unique_ptr<Clock> makeSystemClock()
{
    return std::make_unique<SystemClock>();
}

}  // namespace kelvane
