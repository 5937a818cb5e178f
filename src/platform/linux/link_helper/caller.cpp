#include "platform/linux/link_helper/caller.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <grp.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kelvane::linux_os {
namespace {

std::optional<uid_t> userNamedByPolkit()
{
    const char* text = std::getenv("PKEXEC_UID");
    if (text == nullptr)
        return std::nullopt;
    uid_t user = 0;
    const char* end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, user);
    return error == std::errc{} && stop == end ? std::optional(user) : std::nullopt;
}

std::vector<gid_t> groupsOf(const passwd& entry)
{
    std::vector<gid_t> groups(64);
    for (;;) {
        int count = static_cast<int>(groups.size());
        const bool all = ::getgrouplist(entry.pw_name, entry.pw_gid, groups.data(), &count) >= 0;
        const auto needed = static_cast<std::size_t>(count);
        const bool more = !all && needed > groups.size();
        groups.resize(needed);
        if (!more)
            return groups;
    }
}

}  // namespace

std::optional<Caller> Caller::of(int socket)
{
    ucred peer{};
    socklen_t length = sizeof peer;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0)
        return std::nullopt;
    if (peer.pid != ::getppid() || userNamedByPolkit() != peer.uid)
        return std::nullopt;
    const passwd* entry = ::getpwuid(peer.uid);
    if (entry == nullptr)
        return std::nullopt;
    return Caller(peer.pid, peer.uid, entry->pw_gid, groupsOf(*entry));
}

Caller::Caller(pid_t process, uid_t user, gid_t group, std::vector<gid_t> groups)
    : process_(process), user_(user), group_(group), groups_(std::move(groups))
{
}

bool Caller::act(const std::function<void()>& work) const
{
    if (::getuid() != 0) {
        // Without an administrator's rights there is nothing to put off; another user's cannot be taken on.
        if (::getuid() == user_)
            work();
        return ::getuid() == user_;
    }
    const bool taken = takeOn();
    if (taken)
        work();
    putOff();
    return taken;
}

bool Caller::takeOn() const
{
    return ::setgroups(groups_.size(), groups_.data()) == 0 && ::setegid(group_) == 0 && ::seteuid(user_) == 0;
}

void Caller::putOff()
{
    if (::seteuid(0) != 0 || ::setegid(0) != 0 || ::setgroups(0, nullptr) != 0)
        std::abort();
}

}  // namespace kelvane::linux_os
