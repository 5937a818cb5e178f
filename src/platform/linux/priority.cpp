#include <algorithm>
#include <cerrno>
#include <exception>
#include <linux/ioprio.h>
#include <optional>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

constexpr int loweredNice = 10;

// On Linux both priorities belong to a thread, and threads started later inherit them. A refusal is no failure: the
// work then runs at the priority that it has.
void lowerOwnPriority()
{
    const auto self = static_cast<id_t>(::syscall(SYS_gettid));
    errno = 0;
    const int nice = ::getpriority(PRIO_PROCESS, self);
    if (errno == 0 && nice < loweredNice)  // never up
        ::setpriority(PRIO_PROCESS, self, loweredNice);
    ::syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, 0, IOPRIO_PRIO_VALUE(IOPRIO_CLASS_IDLE, 0));
}

std::optional<std::thread> startThread(const std::function<void()>& work)
{
    try {
        return std::thread(work);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

class LinuxPriority final : public Priority {
public:
    void runLowered(const std::function<void()>& work) override
    {
        std::exception_ptr thrown;
        auto thread = startThread([&] {
            lowerOwnPriority();
            try {
                work();
            } catch (...) {
                thrown = std::current_exception();
            }
        });
        if (!thread)
            return work();
        thread->join();
        if (thrown)
            std::rethrow_exception(thrown);
    }
};

}  // namespace

std::unique_ptr<Priority> makeLinuxPriority()
{
    return std::make_unique<LinuxPriority>();
}

}  // namespace kelvane
