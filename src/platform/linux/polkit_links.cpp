#include "platform/linux/polkit_links.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <poll.h>
#include <spawn.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/file_handle.h"
#include "platform/linux/link_helper/link_message.h"
#include "platform/linux/os_error.h"

namespace kelvane {
namespace {

using namespace std::chrono_literals;
using linux_os::FileHandle;
using linux_os::LinkAnswer;
using linux_os::LinkOutcome;
using linux_os::LinkRequest;
using linux_os::LinkRequestKind;
using linux_os::LinkSecret;
using linux_os::osError;
using linux_os::uninterrupted;

// Somebody looks for a password first; making a link takes no time.
constexpr auto timeToAsk = 300s;
constexpr auto timeToAnswer = 5s;

// How pkexec ends when the helper was not started (pkexec(1)).
constexpr int dismissed = 126;
constexpr int notAuthorised = 127;

// A started helper with our end of its socket. Told to leave by the destructor.
class Helper {
public:
    static Result<std::unique_ptr<Helper>> start(const PolkitPrograms& programs, const std::filesystem::path& folder);
    ~Helper();
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;

    Result<LinkAnswer> ask(LinkRequestKind kind, std::chrono::milliseconds patience, std::string link = {},
                           std::string target = {});

private:
    Helper() = default;
    Status spawn(const PolkitPrograms& programs, const std::filesystem::path& folder, FileHandle theirs);
    Error whyItEnded();

    FileHandle socket_;
    pid_t process_ = 0;
    LinkSecret secret_{};
};

Result<std::unique_ptr<Helper>> Helper::start(const PolkitPrograms& programs, const std::filesystem::path& folder)
{
    std::unique_ptr<Helper> helper(new Helper);
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return osError(errno);
    helper->socket_ = FileHandle(ends[0]);
    FileHandle theirs(ends[1]);
    // From the first message on the kernel says who sent it.
    constexpr int on = 1;
    if (::setsockopt(theirs.get(), SOL_SOCKET, SO_PASSCRED, &on, sizeof on) != 0 ||
        ::getrandom(helper->secret_.data(), helper->secret_.size(), 0) != static_cast<ssize_t>(helper->secret_.size()))
        return osError(errno);
    if (auto status = helper->spawn(programs, folder, std::move(theirs)); !status)
        return status.error();
    auto greeting = helper->ask(LinkRequestKind::greet, timeToAsk);
    if (!greeting)
        return greeting.error();
    return helper;
}

Status Helper::spawn(const PolkitPrograms& programs, const std::filesystem::path& folder, FileHandle theirs)
{
    std::string words[] = {programs.pkexec.string(), programs.helper.string(), folder.string()};
    char* const arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, theirs.get(), STDIN_FILENO);
    const int code = ::posix_spawn(&process_, arguments[0], &actions, nullptr, arguments, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (code == 0)
        return {};
    process_ = 0;
    return Error{ErrorKind::notSupported, code, osError(code).detail};
}

Helper::~Helper()
{
    if (process_ == 0)
        return;
    const auto bytes = linux_os::encode({LinkRequestKind::leave, secret_, {}, {}});
    static_cast<void>(::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL));
    socket_ = FileHandle();
    // It ends by itself; somebody must take its end off the system's list, and nobody should wait for that.
    std::thread([process = process_] {
        static_cast<void>(uninterrupted([&] { return ::waitpid(process, nullptr, 0); }));
    }).detach();
}

Result<LinkAnswer> Helper::ask(LinkRequestKind kind, std::chrono::milliseconds patience, std::string link,
                               std::string target)
{
    const auto bytes = linux_os::encode({kind, secret_, std::move(link), std::move(target)});
    if (bytes.size() > linux_os::largestLinkMessage)
        return Error{ErrorKind::invalid, 0, "the path is too long"};
    if (uninterrupted([&] { return ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL); }) < 0)
        return whyItEnded();
    pollfd watched{socket_.get(), POLLIN, 0};
    if (uninterrupted([&] { return ::poll(&watched, 1, static_cast<int>(patience.count())); }) <= 0)
        return Error{ErrorKind::io, 0, "the elevated helper does not answer"};
    std::array<std::byte, 64> answer{};
    const auto length = uninterrupted([&] { return ::recv(socket_.get(), answer.data(), answer.size(), 0); });
    if (length <= 0)
        return whyItEnded();
    const auto decoded = linux_os::decodeAnswer(std::span(answer).first(static_cast<std::size_t>(length)));
    return decoded ? Result(*decoded) : Error{ErrorKind::invalid, 0, "the elevated helper gave no sensible answer"};
}

Error Helper::whyItEnded()
{
    int status = 0;
    static_cast<void>(uninterrupted([&] { return ::waitpid(process_, &status, 0); }));
    process_ = 0;
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    if (code == dismissed)
        return {ErrorKind::cancelled, 0, "the request for an administrator's rights was dismissed"};
    if (code == notAuthorised)
        return {ErrorKind::accessDenied, 0, "an administrator's rights were not granted"};
    return {ErrorKind::io, 0, "the elevated helper ended"};
}

class PolkitLinks final : public SymbolicLinkService {
public:
    PolkitLinks(std::filesystem::path folder, PolkitPrograms programs)
        : folder_(std::move(folder)), programs_(std::move(programs))
    {
    }

    Status make(const std::filesystem::path& link, const std::filesystem::path& target) override
    {
        const std::string inside = (folder_ / "").string();
        if (!link.string().starts_with(inside))
            return Error{ErrorKind::invalid, 0, "it lies outside the folder that rights were asked for"};
        const std::lock_guard lock(mutex_);
        if (!helper_) {
            auto started = Helper::start(programs_, folder_);
            if (!started)
                return started.error();
            helper_ = std::move(*started);
        }
        const auto answer =
            helper_->ask(LinkRequestKind::make, timeToAnswer, link.string().substr(inside.size()), target.string());
        if (!answer && answer.error().kind != ErrorKind::invalid)
            helper_.reset();  // asked again next time
        return answer ? statusFrom(*answer) : Status(answer.error());
    }

private:
    static Status statusFrom(const LinkAnswer& answer)
    {
        switch (answer.outcome) {
        case LinkOutcome::done:
            return {};
        case LinkOutcome::failed:
            return answer.systemCode == EEXIST ? Error{ErrorKind::changed, EEXIST, osError(EEXIST).detail}
                                               : osError(answer.systemCode);
        case LinkOutcome::notSeen:
            return Error{ErrorKind::notFound, 0, "the folder or the kept file cannot be seen, or lies behind a link"};
        case LinkOutcome::badRequest:
            break;
        }
        return Error{ErrorKind::invalid, 0, "the elevated helper refused the request"};
    }

    std::filesystem::path folder_;
    PolkitPrograms programs_;
    std::mutex mutex_;
    std::unique_ptr<Helper> helper_;
};

}  // namespace

std::unique_ptr<SymbolicLinkService> makePolkitLinks(std::filesystem::path folder, PolkitPrograms programs)
{
    return std::make_unique<PolkitLinks>(std::move(folder), std::move(programs));
}

PolkitPrograms installedPolkitPrograms(const std::filesystem::path& programFolder)
{
    constexpr const char* name = "kelvane-link-helper";
    const auto installed = programFolder.parent_path() / "libexec" / "kelvane" / name;
    std::error_code error;
    return {"/usr/bin/pkexec", std::filesystem::exists(installed, error) ? installed : programFolder / name};
}

}  // namespace kelvane
