#include "platform/interrupts.h"

#include <atomic>
#include <windows.h>

#include "platform/windows/adapters.h"

namespace kelvane {
namespace {

constexpr UINT interruptedExitCode = 130;
constexpr DWORD patienceOfTheSystem = 20'000;  // it ends the program sooner

// The system calls the handler without any word of the program's own, so that it finds the flag only here.
std::atomic<CancelFlag*> watched{nullptr};

BOOL WINAPI onRequest(DWORD request)
{
    CancelFlag* flag = watched.load();
    if (!flag)
        return FALSE;
    if (flag->cancelled() && (request == CTRL_C_EVENT || request == CTRL_BREAK_EVENT))
        ::ExitProcess(interruptedExitCode);
    flag->cancel();
    // The program is ended as soon as these return; until then it may come to its own end.
    if (request == CTRL_CLOSE_EVENT || request == CTRL_LOGOFF_EVENT || request == CTRL_SHUTDOWN_EVENT)
        ::Sleep(patienceOfTheSystem);
    return TRUE;
}

class ConsoleWatch final : public InterruptWatch {
public:
    explicit ConsoleWatch(CancelFlag& flag)
    {
        watched.store(&flag);
        ::SetConsoleCtrlHandler(onRequest, TRUE);
    }
    ~ConsoleWatch() override
    {
        ::SetConsoleCtrlHandler(onRequest, FALSE);
        watched.store(nullptr);
    }
};

// A program that was started to ignore Ctrl-C is not told of it, and writing to a closed pipe is an ordinary error.
class ConsoleInterrupts final : public Interrupts {
public:
    std::unique_ptr<InterruptWatch> watch(CancelFlag& flag) override { return std::make_unique<ConsoleWatch>(flag); }
};

}  // namespace

std::unique_ptr<Interrupts> makeConsoleInterrupts()
{
    return std::make_unique<ConsoleInterrupts>();
}

}  // namespace kelvane
