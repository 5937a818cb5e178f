#include "platform/linux/worker_child.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "platform/linux/os_error.h"
#include "platform/worker_frames.h"

namespace kelvane::linux_os {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds betweenLooks{2};

class WorkerStart {
public:
    explicit WorkerStart(int socket)
    {
        ::posix_spawn_file_actions_init(&files_);
        ::posix_spawn_file_actions_adddup2(&files_, socket, workerSocket);
        ::posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&files_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        if (!sanitizedBuild)  // whose findings are for the developer's eyes
            ::posix_spawn_file_actions_addopen(&files_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawnattr_init(&attributes_);
        sigset_t none, all;
        sigemptyset(&none);
        sigfillset(&all);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        ::posix_spawnattr_setsigdefault(&attributes_, &all);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~WorkerStart()
    {
        ::posix_spawn_file_actions_destroy(&files_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    WorkerStart(const WorkerStart&) = delete;
    WorkerStart& operator=(const WorkerStart&) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t* files() const { return &files_; }
    [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t files_{};
    posix_spawnattr_t attributes_{};
};

std::vector<std::string> cleanEnvironment()
{
    std::vector<std::string> environment{"PATH=/usr/local/bin:/usr/bin:/bin", "LC_ALL=C.UTF-8"};
    for (const std::string name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS"}) {
        const char* value = sanitizedBuild ? std::getenv(name.c_str()) : nullptr;
        if (value != nullptr)
            environment.push_back(name + "=" + value);
    }
    return environment;
}

std::vector<char*> pointersTo(std::vector<std::string>& words)
{
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

// Leaves it in the system's list, so that its number cannot become another process's meanwhile.
std::optional<ProcessEnd> peekAtEnd(pid_t id)
{
    siginfo_t facts{};
    if (::waitid(P_PID, static_cast<id_t>(id), &facts, WEXITED | WNOHANG | WNOWAIT) != 0 || facts.si_pid == 0)
        return std::nullopt;
    return facts.si_code == CLD_EXITED ? ProcessEnd{facts.si_status, 0} : ProcessEnd{0, facts.si_status};
}

}  // namespace

Result<WorkerChild> WorkerChild::start(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                                       const FileHandle& socket)
{
    std::vector<std::string> words{program.native()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = cleanEnvironment();
    const WorkerStart how(socket.get());
    pid_t id = 0;
    const int code = ::posix_spawn(&id, program.c_str(), how.files(), how.attributes(), pointersTo(words).data(),
                                   pointersTo(environment).data());
    if (code != 0)
        return osError(code);
    return WorkerChild(id);
}

std::optional<ProcessEnd> WorkerChild::endWithin(milliseconds patience) const
{
    const auto deadline = steady_clock::now() + patience;
    for (;;) {
        const auto end = id_ != 0 ? peekAtEnd(id_) : std::nullopt;
        if (end || steady_clock::now() >= deadline)
            return end;
        std::this_thread::sleep_for(betweenLooks);
    }
}

void WorkerChild::end()
{
    if (id_ == 0)
        return;
    ::kill(-id_, SIGKILL);
    ::kill(id_, SIGKILL);
    static_cast<void>(uninterrupted([&] { return ::waitpid(id_, nullptr, 0); }));
    id_ = 0;
}

std::optional<std::uint64_t> WorkerChild::memoryInUse() const
{
    std::ifstream facts("/proc/" + std::to_string(id_) + "/statm");
    std::uint64_t whole = 0, resident = 0;
    if (!(facts >> whole >> resident))
        return std::nullopt;
    return resident * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

StartingThread::~StartingThread()
{
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

bool StartingThread::run(const std::function<void()>& work)
{
    const std::lock_guard oneCaller(callers_);
    std::unique_lock lock(mutex_);
    if (!thread_.joinable()) {
        try {
            thread_ = std::thread([this] { serve(); });
        } catch (const std::system_error&) {
            return false;
        }
    }
    work_ = &work;
    changed_.notify_all();
    changed_.wait(lock, [&] { return work_ == nullptr; });
    return true;
}

void StartingThread::serve()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [&] { return work_ != nullptr || ending_; });
        if (work_ == nullptr)
            return;
        (*work_)();
        work_ = nullptr;
        changed_.notify_all();
    }
}

}  // namespace kelvane::linux_os
