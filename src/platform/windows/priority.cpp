#include <mutex>
#include <windows.h>

#include "platform/windows/adapters.h"

namespace kelvane {
namespace {

bool isBelowNormal(DWORD priorityClass)
{
    return priorityClass == BELOW_NORMAL_PRIORITY_CLASS || priorityClass == IDLE_PRIORITY_CLASS;
}

// Threads inherit nothing here, so the processor priority of the whole process goes down while any lowered work runs.
// The process's own background mode would also take most of its memory away, so that only the calling thread gives way
// at the disk.
class WindowsPriority final : public Priority {
public:
    void runLowered(const std::function<void()>& work) override
    {
        const Lowered lowered(*this);
        const bool inBackground = ::SetThreadPriority(::GetCurrentThread(), THREAD_MODE_BACKGROUND_BEGIN) != 0;
        const BackgroundEnd end{inBackground};
        work();
    }

private:
    struct BackgroundEnd {
        bool begun;
        ~BackgroundEnd()
        {
            if (begun)
                ::SetThreadPriority(::GetCurrentThread(), THREAD_MODE_BACKGROUND_END);
        }
    };

    class Lowered {
    public:
        explicit Lowered(WindowsPriority& owner) : owner_(owner) { owner_.begin(); }
        ~Lowered() { owner_.end(); }
        Lowered(const Lowered&) = delete;
        Lowered& operator=(const Lowered&) = delete;

    private:
        WindowsPriority& owner_;
    };

    void begin()
    {
        const std::lock_guard lock(mutex_);
        if (running_++ > 0)
            return;
        before_ = ::GetPriorityClass(::GetCurrentProcess());
        if (before_ != 0 && !isBelowNormal(before_))  // never up
            ::SetPriorityClass(::GetCurrentProcess(), BELOW_NORMAL_PRIORITY_CLASS);
    }

    void end()
    {
        const std::lock_guard lock(mutex_);
        if (--running_ == 0 && before_ != 0)
            ::SetPriorityClass(::GetCurrentProcess(), before_);
    }

    std::mutex mutex_;
    int running_ = 0;
    DWORD before_ = 0;
};

}  // namespace

std::unique_ptr<Priority> makeWindowsPriority()
{
    return std::make_unique<WindowsPriority>();
}

}  // namespace kelvane
