#include "platform/linux/child_process.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "platform/linux/file_handle.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds betweenLooks{10};

// What a started program gets instead of what this one has.
class FreshStart {
public:
    FreshStart()
    {
        ::posix_spawn_file_actions_init(&files_);
        ::posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&files_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&files_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawnattr_init(&attributes_);
        sigset_t none, pipe;
        sigemptyset(&none);
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        ::posix_spawnattr_setsigdefault(&attributes_, &pipe);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~FreshStart()
    {
        ::posix_spawn_file_actions_destroy(&files_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    FreshStart(const FreshStart&) = delete;
    FreshStart& operator=(const FreshStart&) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t* files() const { return &files_; }
    [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t files_{};
    posix_spawnattr_t attributes_{};
};

bool isCString(const std::string& text)
{
    return text.find('\0') == std::string::npos;
}

int codeOf(int status)
{
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void waitForEnd(pid_t id)
{
    (void)uninterrupted([&] { return ::waitpid(id, nullptr, 0); });
}

}  // namespace

Result<ChildProcess> ChildProcess::start(const std::filesystem::path& program,
                                         const std::vector<std::string>& arguments)
{
    std::vector<std::string> words{program.native()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    if (!std::all_of(words.begin(), words.end(), isCString))
        return osError(EINVAL);
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const FreshStart fresh;
    pid_t id = 0;
    const int code = ::posix_spawn(&id, program.c_str(), fresh.files(), fresh.attributes(), pointers.data(), environ);
    if (code != 0)
        return osError(code);
    return ChildProcess(id);
}

ChildProcess::~ChildProcess()
{
    if (id_ == 0 || exitCode())
        return;
    try {
        std::thread(waitForEnd, id_).detach();
    } catch (const std::system_error&) {
        // Its entry then stays in the system's list until this program ends.
    }
}

std::optional<int> ChildProcess::exitCode()
{
    int status = 0;
    if (!exitCode_ && uninterrupted([&] { return ::waitpid(id_, &status, WNOHANG); }) == id_)
        exitCode_ = codeOf(status);
    return exitCode_;
}

std::optional<int> ChildProcess::exitCodeWithin(milliseconds time)
{
    const auto deadline = steady_clock::now() + time;
    while (!exitCode() && steady_clock::now() < deadline)
        std::this_thread::sleep_for(betweenLooks);
    return exitCode_;
}

std::filesystem::path findProgram(const std::string& name, const std::string& searchPath)
{
    for (std::size_t from = 0; from <= searchPath.size();) {
        const std::size_t end = std::min(searchPath.find(':', from), searchPath.size());
        const std::filesystem::path folder = searchPath.substr(from, end - from);
        std::filesystem::path program = folder / name;
        std::error_code error;
        const bool isFile = folder.is_absolute() && std::filesystem::is_regular_file(program, error);
        if (isFile && ::access(program.c_str(), X_OK) == 0)
            return program;
        from = end + 1;
    }
    return {};
}

}  // namespace kelvane::linux_os
