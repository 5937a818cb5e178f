#include <windows.h>

#include "platform/windows/adapters.h"
#include "platform/windows/file_facts.h"

namespace kelvane {
namespace {

class SystemClock final : public Clock {
public:
    std::uint64_t ticks() const override { return ::GetTickCount64(); }

    FileTime now() const override
    {
        FILETIME time{};
        ::GetSystemTimeAsFileTime(&time);
        return windows_os::timeOf(time);
    }
};

}  // namespace

std::unique_ptr<Clock> makeSystemClock()
{
    return std::make_unique<SystemClock>();
}

}  // namespace kelvane
