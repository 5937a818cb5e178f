#include "platform/linux/worker_confinement.h"

#include <array>
#include <cstdint>
#include <fcntl.h>
#include <linux/capability.h>
#include <signal.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/linux/call_filter.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/landlock_rules.h"
#include "platform/linux/whole_writes.h"
#include "platform/linux/worker_child.h"
#include "platform/worker_frames.h"

namespace kelvane::linux_os {
namespace {

constexpr rlim_t mostOpenFiles = 64;

bool limit(int resource, rlim_t most)
{
    const rlimit both{most, most};
    return ::setrlimit(static_cast<__rlimit_resource_t>(resource), &both) == 0;
}

// In a sanitized build the program's look at the memory in use is all that bounds it.
bool limitMemory(std::uint64_t bytes)
{
    return !sanitizedBuild && (bytes == 0 || limit(RLIMIT_AS, bytes));
}

// Of a program that the administrator runs.
void dropCapabilities()
{
    for (unsigned long capability = 0; ::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) == 0; ++capability)
        ;
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    const std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none{};
    static_cast<void>(::syscall(SYS_capset, &header, none.data()));
}

// When memory runs out, a document is lost rather than the program.
void volunteerAsVictim()
{
    constexpr std::string_view most = "1000";
    const FileHandle score(::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
    if (score.valid())
        static_cast<void>(writeAll(score.get(), std::as_bytes(std::span(most))));
}

}  // namespace

void leaveTheProgramBehind(WorkerProgram program)
{
    const bool movedAway = ::chdir("/") == 0;  // keeps no volume busy
    static_cast<void>(movedAway);
    volunteerAsVictim();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
    ::prctl(PR_SET_NAME, program == WorkerProgram::media ? "kelvane-media" : "kelvane-worker", 0, 0, 0);
    ::fcntl(workerSocket, F_SETFD, FD_CLOEXEC);
    ::syscall(SYS_close_range, workerSocket + 1, ~0U, 0);
    // A tool that tries to write where nothing can be written gets an error, and may go on.
    ::signal(SIGXFSZ, SIG_IGN);
    ::signal(SIGPIPE, SIG_IGN);
}

WorkerConfinement confineWorker(const WorkerLimits& limits)
{
    const bool smallFiles = limit(RLIMIT_FSIZE, 0) && limit(RLIMIT_CORE, 0) && limit(RLIMIT_NOFILE, mostOpenFiles);
    WorkerConfinement walls;
    walls.memory = limitMemory(limits.memoryBytes) && smallFiles;
    dropCapabilities();
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return walls;
    const LandlockWalls landlock = raiseLandlock(limits);
    walls.files = landlock.files;
    walls.calls = refuseDangerousCalls(limits);
    walls.signals = landlock.signals || (walls.calls && (walls.files || limits.reach == WorkerReach::otherFiles));
    return walls;
}

}  // namespace kelvane::linux_os
