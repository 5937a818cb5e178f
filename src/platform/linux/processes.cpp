#include "platform/processes.h"

#include <fstream>
#include <iterator>
#include <mutex>
#include <signal.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/adapters.h"
#include "platform/linux/child_process.h"
#include "platform/linux/crash_restart.h"
#include "platform/linux/default_route.h"
#include "platform/linux/os_error.h"
#include "platform/linux/xdg_tools.h"

namespace kelvane {
namespace {

using linux_os::ChildProcess;
using std::chrono::milliseconds;
using std::filesystem::path;

// A person looks for a password first.
constexpr std::chrono::minutes timeToAuthenticate{5};
constexpr milliseconds betweenLooks{20};

// How pkexec ends when it did not start the program (pkexec(1)).
constexpr int dismissed = 126;
constexpr int notAuthorised = 127;

constexpr const char* elevator = "pkexec";

// There is no terminal to ask on; a word that only pkexec itself is given.
constexpr const char* askingMark = "--disable-internal-agent";

std::optional<std::string> readText(const char* file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return std::nullopt;
    return std::string(std::istreambuf_iterator(stream), {});
}

// As long as pkexec asks, the process has pkexec's words; for an instant before that, and after its end, it has none.
bool isStillAsking(pid_t process)
{
    const auto words = readText(("/proc/" + std::to_string(process) + "/cmdline").c_str());
    return words && (words->empty() || words->find(askingMark) != std::string::npos);
}

Status elevationOutcome(int exitCode)
{
    if (exitCode == dismissed)
        return Error{ErrorKind::cancelled, 0, "the request for an administrator's rights was dismissed"};
    if (exitCode == notAuthorised)
        return Error{ErrorKind::accessDenied, 0, "an administrator's rights were not granted"};
    return {};  // the program ran, and ended already
}

Status waitForElevation(ChildProcess& asking)
{
    const auto deadline = std::chrono::steady_clock::now() + timeToAuthenticate;
    while (isStillAsking(asking.id())) {
        if (const auto code = asking.exitCodeWithin(betweenLooks))
            return elevationOutcome(*code);
        if (std::chrono::steady_clock::now() >= deadline) {
            ::kill(asking.id(), SIGTERM);
            return elevationOutcome(dismissed);
        }
    }
    const auto code = asking.exitCode();
    return code ? elevationOutcome(*code) : Status();
}

class LinuxProcesses final : public Processes {
public:
    explicit LinuxProcesses(ProcessTools tools) : tools_(std::move(tools)) {}

    Status start(const path& program, const std::vector<NativeString>& arguments) override
    {
        const auto child = ChildProcess::start(program, arguments);
        return child ? Status() : child.error();
    }

    Status startElevated(const path& program, const std::vector<NativeString>& arguments) override
    {
        const path pkexec = linux_os::findProgram(elevator, tools_.searchPath);
        if (pkexec.empty())
            return Error{ErrorKind::notSupported, 0, "polkit's pkexec is not installed"};
        std::vector<NativeString> words{askingMark, std::filesystem::absolute(program).native()};
        words.insert(words.end(), arguments.begin(), arguments.end());
        auto asking = ChildProcess::start(pkexec, words);
        return asking ? waitForElevation(*asking) : asking.error();
    }

    bool isElevated() const override { return ::geteuid() == 0; }

    Status openFile(const path& file) override
    {
        const path absolute = std::filesystem::absolute(file);
        if (::access(absolute.c_str(), F_OK) != 0)
            return linux_os::osError(errno);
        return open(linux_os::fileLink(absolute));
    }

    Status openLink(const std::string& link) override
    {
        return linux_os::isLink(link) ? open(link) : Error{ErrorKind::invalid, 0, "not a link"};
    }

    MailOutcome composeMail(const MailDraft& draft) override
    {
        const auto words = linux_os::mailArguments(draft);
        const auto outcome = words ? runTool("xdg-email", *words) : Error{};
        const bool taken = outcome && outcome->value_or(0) == 0;
        return taken ? MailOutcome::handedOver : MailOutcome::unavailable;
    }

    bool isOnline() const override
    {
        const auto ipv4 = readText("/proc/net/route");
        const auto ipv6 = readText("/proc/net/ipv6_route");
        return (!ipv4 && !ipv6) || linux_os::hasDefaultRoute(ipv4.value_or(""), ipv6.value_or(""));
    }

    void restartAfterCrash(const std::vector<NativeString>& arguments) override
    {
        const std::lock_guard lock(restartMutex_);
        linux_os::rememberRestart(arguments);
    }

private:
    // How the tool ended. Some desktops' tools run on as long as the program that they found: nothing then.
    Result<std::optional<int>> runTool(const char* name, const std::vector<std::string>& words) const
    {
        const path tool = linux_os::findProgram(name, tools_.searchPath);
        if (tool.empty())
            return Error{ErrorKind::notSupported, 0, std::string(name) + " is not installed"};
        auto child = ChildProcess::start(tool, words);
        if (!child)
            return child.error();
        return child->exitCodeWithin(tools_.patience);
    }

    Status open(const std::string& link) const
    {
        const auto outcome = runTool("xdg-open", {link});
        return outcome ? linux_os::openingOutcome(*outcome) : outcome.error();
    }

    ProcessTools tools_;
    std::mutex restartMutex_;
};

}  // namespace

std::unique_ptr<Processes> makeLinuxProcesses(ProcessTools tools)
{
    return std::make_unique<LinuxProcesses>(std::move(tools));
}

}  // namespace kelvane
