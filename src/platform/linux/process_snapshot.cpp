#include "platform/linux/process_snapshot.h"

#include <signal.h>
#include <sys/utsname.h>
#include <time.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "platform/linux/os_error.h"
#include "platform/linux/process_maps.h"
#include "platform/linux/process_reader.h"
#include "platform/linux/stopped_threads.h"

namespace kelvane::linux_os {
namespace {

constexpr std::chrono::milliseconds patience{1'000};
constexpr std::size_t largestMaps = 4 * 1024 * 1024;
constexpr std::size_t largestSmallFile = 64 * 1024;
constexpr std::uint64_t redZone = 128;              // below the stack pointer, in use by leaf functions
constexpr std::uint64_t largestStack = 512 * 1024;  // of one thread
constexpr std::uint64_t allStacks = 64 * 1024 * 1024;
constexpr std::uint64_t widestGuard = 1024 * 1024;  // between a stack pointer that ran out and its stack
constexpr std::uint64_t aroundInstruction = 256;

DumpedSystem thisSystem()
{
    DumpedSystem system;
    utsname names{};
    if (::uname(&names) == 0) {
        std::sscanf(names.release, "%u.%u.%u", &system.major, &system.minor, &system.build);
        system.text = std::string(names.sysname) + ' ' + names.release + ' ' + names.version + ' ' + names.machine;
    }
    system.processors = static_cast<std::uint32_t>(std::max(1L, ::sysconf(_SC_NPROCESSORS_ONLN)));
    return system;
}

// The registers at the fault, not those of the handler that waits now.
void takeRegisters(const gregset_t& from, user_regs_struct& to)
{
    const auto reg = [&](int index) { return static_cast<unsigned long long>(from[index]); };
    to.r8 = reg(REG_R8);
    to.r9 = reg(REG_R9);
    to.r10 = reg(REG_R10);
    to.r11 = reg(REG_R11);
    to.r12 = reg(REG_R12);
    to.r13 = reg(REG_R13);
    to.r14 = reg(REG_R14);
    to.r15 = reg(REG_R15);
    to.rdi = reg(REG_RDI);
    to.rsi = reg(REG_RSI);
    to.rbp = reg(REG_RBP);
    to.rbx = reg(REG_RBX);
    to.rdx = reg(REG_RDX);
    to.rax = reg(REG_RAX);
    to.rcx = reg(REG_RCX);
    to.rsp = reg(REG_RSP);
    to.rip = reg(REG_RIP);
    to.eflags = reg(REG_EFL);
    to.cs = reg(REG_CSGSFS) & 0xFFFF;
    to.gs = reg(REG_CSGSFS) >> 16 & 0xFFFF;
    to.fs = reg(REG_CSGSFS) >> 32 & 0xFFFF;
}

bool isAtAddress(const siginfo_t& info)
{
    const int signal = info.si_signo;
    return info.si_code > 0 && (signal == SIGSEGV || signal == SIGBUS || signal == SIGILL || signal == SIGFPE);
}

class Snapshot {
public:
    explicit Snapshot(pid_t process) : reader_(process)
    {
        dump_.id = process;
        dump_.unixTime = ::time(nullptr);
        dump_.system = thisSystem();
    }

    Result<DumpedProcess> take(const std::optional<CrashMessage>& fault)
    {
        dump_.threads = stopThreads(threadIds(fault), patience);
        if (fault)
            takeFault(*fault);
        if (dump_.threads.empty())
            return osError(EPERM);
        dump_.maps = reader_.file("maps", largestMaps);
        ranges_ = parseMaps(dump_.maps);
        takeMemory();
        dump_.modules = modulesIn(ranges_, reader_);
        dump_.commandLine = reader_.file("cmdline", largestSmallFile);
        dump_.auxiliaryVector = reader_.file("auxv", largestSmallFile);
        dump_.status = reader_.file("status", largestSmallFile);
        return std::move(dump_);
    }

private:
    // The faulting thread first.
    std::vector<pid_t> threadIds(const std::optional<CrashMessage>& fault) const
    {
        std::vector<pid_t> ids = reader_.threads();
        if (fault)
            std::stable_partition(ids.begin(), ids.end(), [&](pid_t id) { return id == fault->thread; });
        return ids;
    }

    // The faulting thread's registers are known even when it could not be halted, as under a debugger.
    void takeFault(const CrashMessage& message)
    {
        const auto info = reader_.object<siginfo_t>(message.signalInfo);
        const auto context = reader_.object<ucontext_t>(message.signalContext);
        if (!info || !context)
            return;
        if (dump_.threads.empty() || dump_.threads[0].id != message.thread)
            dump_.threads.insert(dump_.threads.begin(), DumpedThread{message.thread, {}, {}, {}});
        DumpedThread& thread = dump_.threads[0];
        takeRegisters(context->uc_mcontext.gregs, thread.registers);
        const auto floating = reinterpret_cast<std::uintptr_t>(context->uc_mcontext.fpregs);
        thread.floating = reader_.object<user_fpregs_struct>(floating).value_or(thread.floating);
        const std::uint64_t address =
            isAtAddress(*info) ? reinterpret_cast<std::uintptr_t>(info->si_addr) : thread.registers.rip;
        dump_.fault = DumpedFault{0, info->si_signo, info->si_code, address};
    }

    void takeMemory()
    {
        std::uint64_t left = allStacks;
        for (DumpedThread& thread : dump_.threads) {
            thread.stack = stackAt(thread.registers.rsp, std::min(left, largestStack));
            left -= thread.stack.bytes.size();
            takeInstructions(thread.registers.rip);
        }
    }

    const MappedRange* rangeAt(std::uint64_t address) const
    {
        const auto found = std::ranges::find_if(ranges_, [&](const auto& range) { return range.holds(address); });
        return found != ranges_.end() ? &*found : nullptr;
    }

    // A stack that ran over ends below its range, in the guard pages; then it begins with the next range.
    const MappedRange* stackRange(std::uint64_t pointer) const
    {
        const auto found = std::ranges::find_if(ranges_, [&](const auto& range) {
            return range.readable && pointer < range.end && range.start < pointer + widestGuard;
        });
        return found != ranges_.end() ? &*found : nullptr;
    }

    DumpedMemory stackAt(std::uint64_t pointer, std::uint64_t limit) const
    {
        const MappedRange* range = stackRange(pointer);
        if (!range)
            return {};
        const std::uint64_t start = std::max(pointer - std::min(pointer, redZone), range->start);
        return {start, reader_.memory(start, std::min(range->end - start, limit))};
    }

    void takeInstructions(std::uint64_t pointer)
    {
        const MappedRange* range = rangeAt(pointer);
        const auto known = std::ranges::any_of(dump_.memory, [&](const DumpedMemory& memory) {
            return memory.address <= pointer && pointer < memory.end();
        });
        if (!range || !range->readable || known)
            return;
        const std::uint64_t start = std::max(pointer - std::min(pointer, aroundInstruction / 2), range->start);
        dump_.memory.push_back({start, reader_.memory(start, std::min(range->end - start, aroundInstruction))});
    }

    ProcessReader reader_;
    DumpedProcess dump_;
    std::vector<MappedRange> ranges_;
};

}  // namespace

Result<DumpedProcess> snapshotOf(pid_t process, const std::optional<CrashMessage>& fault)
{
    return Snapshot(process).take(fault);
}

}  // namespace kelvane::linux_os
