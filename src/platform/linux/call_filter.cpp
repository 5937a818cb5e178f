#include "platform/linux/call_filter.h"

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <type_traits>
#include <unistd.h>

namespace kelvane::linux_os {
namespace {

// No parser and no filter program has a use for these.
constexpr const char* refused[] = {
    // the network, and whoever listens on this computer
    "socket",
    "connect",
    "bind",
    "listen",
    "accept",
    "accept4",
    // other processes
    "ptrace",
    "process_vm_readv",
    "process_vm_writev",
    "process_madvise",
    "pidfd_open",
    "pidfd_getfd",
    "kcmp",
    "tkill",
    "rt_sigqueueinfo",
    "rt_tgsigqueueinfo",
    "setpgid",
    "setsid",
    "setpriority",
    "sched_setscheduler",
    "sched_setattr",
    "ioprio_set",
    "migrate_pages",
    "move_pages",
    // other rights, other views of the system
    "unshare",
    "setns",
    "mount",
    "umount2",
    "pivot_root",
    "chroot",
    "fsopen",
    "fsmount",
    "fsconfig",
    "fspick",
    "move_mount",
    "open_tree",
    "mount_setattr",
    "setuid",
    "setgid",
    "setreuid",
    "setregid",
    "setresuid",
    "setresgid",
    "setfsuid",
    "setfsgid",
    "setgroups",
    "capset",
    "personality",
    // the kernel's wider surface
    "bpf",
    "perf_event_open",
    "userfaultfd",
    "io_uring_setup",
    "io_uring_enter",
    "io_uring_register",
    "keyctl",
    "add_key",
    "request_key",
    "init_module",
    "finit_module",
    "delete_module",
    "kexec_load",
    "kexec_file_load",
    "lookup_dcookie",
    "name_to_handle_at",
    "open_by_handle_at",
    "fanotify_init",
    "quotactl",
    "quotactl_fd",
    "nfsservctl",
    "vmsplice",
    "remap_file_pages",
    "mbind",
    "set_mempolicy",
    "modify_ldt",
    "vm86",
    "uselib",
    "ustat",
    "sysfs",
    // the machine
    "reboot",
    "swapon",
    "swapoff",
    "acct",
    "syslog",
    "settimeofday",
    "clock_settime",
    "clock_adjtime",
    "adjtimex",
    "sethostname",
    "setdomainname",
    "iopl",
    "ioperm",
    "vhangup",
    // changing files
    "creat",
    "truncate",
    "unlink",
    "unlinkat",
    "rename",
    "renameat",
    "renameat2",
    "mkdir",
    "mkdirat",
    "rmdir",
    "link",
    "linkat",
    "symlink",
    "symlinkat",
    "mknod",
    "mknodat",
    "chmod",
    "fchmod",
    "fchmodat",
    "fchmodat2",
    "chown",
    "fchown",
    "lchown",
    "fchownat",
    "utime",
    "utimes",
    "utimensat",
    "futimesat",
    "setxattr",
    "lsetxattr",
    "fsetxattr",
    "removexattr",
    "lremovexattr",
    "fremovexattr",
    "fallocate",
    "copy_file_range",
    // limits are there to stay
    "setrlimit",
    // memory and messages that outlive the process and are shared with others
    "shmget",
    "shmat",
    "shmctl",
    "shmdt",
    "msgget",
    "msgsnd",
    "msgrcv",
    "msgctl",
    "semget",
    "semop",
    "semtimedop",
    "semctl",
    "mq_open",
    "mq_unlink",
};

// And these only programs that start other programs.
constexpr const char* refusedToLoners[] = {"execve", "execveat", "fork", "vfork", "pidfd_send_signal", "memfd_create"};

// Calls by number that are newer than the library's names: setxattrat is the first of them (Linux 6.13).
constexpr int firstUnnamed = 463;
constexpr int lastUnnamed = 511;

// Through these the kernel sends signals to any process of the user: fcntl() of F_SETOWN, F_SETOWN_EX and F_SETSIG,
// ioctl() of FIOSETOWN and SIOCSPGRP. And these type into the terminal: TIOCSTI, TIOCLINUX.
constexpr std::uint64_t refusedFileCommands[] = {8, 15, 10};
constexpr std::uint64_t refusedDeviceCommands[] = {0x8901, 0x8902, 0x5412, 0x541C};

// Their arguments lie in memory where no filter sees them; programs fall back to the older calls.
constexpr const char* absent[] = {"clone3", "openat2"};

class Filter {
public:
    Filter() : context_(::seccomp_init(SCMP_ACT_ALLOW)) { good_ = context_ != nullptr; }

    // A call that this kernel or processor does not have needs no rule.
    template <class... Comparison>
    void refuse(const char* name, int code, Comparison... comparisons)
    {
        const int number = ::seccomp_syscall_resolve_name(name);
        if (!good_ || number == __NR_SCMP_ERROR || number < 0)
            return;
        const scmp_arg_cmp arguments[] = {comparisons..., scmp_arg_cmp{}};
        good_ = ::seccomp_rule_add_array(context_.get(), SCMP_ACT_ERRNO(static_cast<unsigned>(code)), number,
                                         sizeof...(comparisons), arguments) == 0;
    }
    void refuseUnnamed(int code)
    {
        for (int number = firstUnnamed; good_ && number <= lastUnnamed; ++number)
            good_ = ::seccomp_rule_add_array(context_.get(), SCMP_ACT_ERRNO(static_cast<unsigned>(code)), number, 0,
                                             nullptr) == 0;
    }
    [[nodiscard]] bool load()
    {
        return good_ && ::seccomp_attr_set(context_.get(), SCMP_FLTATR_CTL_TSYNC, 1) == 0 &&
               ::seccomp_load(context_.get()) == 0;
    }

private:
    struct Release {
        void operator()(void* context) const { ::seccomp_release(context); }
    };
    std::unique_ptr<void, Release> context_;
    bool good_ = false;
};

scmp_arg_cmp hasBits(unsigned argument, std::uint64_t bits)
{
    return {argument, SCMP_CMP_MASKED_EQ, bits, bits};
}

scmp_arg_cmp is(unsigned argument, std::uint64_t value)
{
    return {argument, SCMP_CMP_MASKED_EQ, 0xFFFFFFFF, value};
}

scmp_arg_cmp lacksBit(unsigned argument, std::uint64_t bit)
{
    return {argument, SCMP_CMP_MASKED_EQ, bit, 0};
}

scmp_arg_cmp isNot(unsigned argument, std::uint64_t value)
{
    return {argument, SCMP_CMP_NE, value, 0};
}

void refuseWriting(Filter& filter)
{
    for (const int flag : {O_WRONLY, O_RDWR, O_CREAT, O_TRUNC}) {
        filter.refuse("open", EPERM, hasBits(1, static_cast<std::uint64_t>(flag)));
        filter.refuse("openat", EPERM, hasBits(2, static_cast<std::uint64_t>(flag)));
    }
}

void refuseNewNamespaces(Filter& filter)
{
    for (const int flag :
         {CLONE_NEWUSER, CLONE_NEWNS, CLONE_NEWPID, CLONE_NEWNET, CLONE_NEWIPC, CLONE_NEWUTS, CLONE_NEWCGROUP})
        filter.refuse("clone", EPERM, hasBits(0, static_cast<std::uint64_t>(flag)));
}

// A process may end itself. Its tools are ended through their pidfds, which nobody else has. Nobody gets rid of the
// signal that comes when the parent is gone, and nobody gains or lifts limits.
void refuseMisuse(Filter& filter)
{
    const auto self = static_cast<std::uint64_t>(::getpid());
    filter.refuse("kill", EPERM, isNot(0, self));
    filter.refuse("tgkill", EPERM, isNot(0, self));
    filter.refuse("prctl", EPERM, is(0, PR_SET_PDEATHSIG), isNot(1, SIGKILL));
    filter.refuse("prlimit64", EPERM, isNot(2, 0));
    for (const std::uint64_t command : refusedFileCommands)
        filter.refuse("fcntl", EPERM, is(1, command));
    for (const std::uint64_t command : refusedDeviceCommands)
        filter.refuse("ioctl", EPERM, is(1, command));
    filter.refuse("clone", EPERM, hasBits(0, CLONE_PARENT));  // a child for the program to reap
}

// Threads are all that it starts. Code comes out of files alone: libraries that write their own go without, and are
// slower.
void refuseCompanyAndOwnCode(Filter& filter)
{
    for (const char* name : refusedToLoners)
        filter.refuse(name, EPERM);
    filter.refuse("clone", EPERM, lacksBit(0, CLONE_THREAD));
    filter.refuse("mmap", EPERM, hasBits(2, PROT_EXEC), hasBits(3, MAP_ANONYMOUS));
    for (const char* name : {"mprotect", "pkey_mprotect"})
        filter.refuse(name, EPERM, hasBits(2, PROT_EXEC));
}

}  // namespace

bool refuseDangerousCalls(const WorkerLimits& limits)
{
    Filter filter;
    for (const char* name : refused)
        filter.refuse(name, EPERM);
    for (const char* name : absent)
        filter.refuse(name, ENOSYS);
    refuseWriting(filter);
    refuseNewNamespaces(filter);
    refuseMisuse(filter);
    // Who may open any file may open a process as a file; only workers that start tools have to end some.
    if (limits.reach == WorkerReach::otherFiles)
        filter.refuse("pidfd_send_signal", EPERM);
    if (limits.program == WorkerProgram::media)
        refuseCompanyAndOwnCode(filter);
    filter.refuseUnnamed(ENOSYS);
    return filter.load();
}

}  // namespace kelvane::linux_os
