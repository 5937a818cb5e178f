#include "platform/linux/crash_capture.h"

#include <cerrno>
#include <filesystem>
#include <mutex>

#include "platform/linux/adapters.h"
#include "platform/linux/crash_watcher.h"
#include "platform/linux/fault_handler.h"
#include "platform/linux/os_error.h"

namespace kelvane {
namespace linux_os {
namespace {

class MinidumpCapture final : public CrashCapture {
public:
    explicit MinidumpCapture(const CrashTimes& times) : times_(times) {}

    ~MinidumpCapture() override { removeFaultHandlers(); }

    Status install(const std::filesystem::path& dump) override
    {
        const std::lock_guard lock(mutex_);
        dump_ = std::filesystem::absolute(dump).native();
        if (auto told = tell(CrashRequest::setPath, dump_); !told.ok())
            return told;
        giveThreadHandlerStack();
        installed_ = true;
        return installFaultHandlers(watcher_.faultSocket(), times_.patience);
    }

    Status writeNow(const std::filesystem::path& dump) override
    {
        const std::lock_guard lock(mutex_);
        return tell(CrashRequest::dumpNow, std::filesystem::absolute(dump).native());
    }

    void guardThisThread() override { giveThreadHandlerStack(); }

private:
    // A watcher that was killed is replaced.
    Status tell(CrashRequest request, const std::string& path)
    {
        auto answer = watcher_.running() ? watcher_.ask(request, path, times_.patience) : std::nullopt;
        if (!answer) {
            if (auto started = startWatcher(); !started.ok())
                return started;
            answer = watcher_.ask(request, path, times_.patience);
        }
        const int code = answer.value_or(ETIMEDOUT);
        return code == 0 ? Status() : Status(osError(code));
    }

    Status startWatcher()
    {
        static_cast<void>(useForFaults(-1));  // before the old socket's number can mean another file
        std::error_code error;
        const std::string program = std::filesystem::read_symlink("/proc/self/exe", error).native();
        auto watcher = CrashWatcher::start({dump_, program, times_.leastLife});
        if (!watcher.ok())
            return watcher.error();
        watcher_ = std::move(*watcher);
        return useForFaults(watcher_.faultSocket());
    }

    Status useForFaults(int socket) { return installed_ ? installFaultHandlers(socket, times_.patience) : Status(); }

    CrashTimes times_;
    std::mutex mutex_;
    bool installed_ = false;
    std::string dump_;
    CrashWatcher watcher_;
};

}  // namespace

std::unique_ptr<CrashCapture> makeCrashCapture(const CrashTimes& times)
{
    return std::make_unique<MinidumpCapture>(times);
}

}  // namespace linux_os

std::unique_ptr<CrashCapture> makeMinidumpCapture()
{
    return linux_os::makeCrashCapture({});
}

}  // namespace kelvane
