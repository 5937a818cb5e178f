#include "platform/linux/link_helper/link_server.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include "platform/linux/link_helper/guarded_path.h"
#include "platform/path_rules.h"

namespace kelvane::linux_os {
namespace {

struct Received {
    bool nothing = false;  // for a while
    bool ended = false;    // the caller has closed its end
    pid_t sender = 0;
    uid_t user = 0;
    std::optional<LinkRequest> request;
};

void readCredentials(const msghdr& message, Received& received)
{
    for (cmsghdr* part = CMSG_FIRSTHDR(&message); part != nullptr;
         part = CMSG_NXTHDR(const_cast<msghdr*>(&message), part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_CREDENTIALS)
            continue;
        ucred sender{};
        std::memcpy(&sender, CMSG_DATA(part), sizeof sender);
        received.sender = sender.pid;
        received.user = sender.uid;
    }
}

Received receive(int socket)
{
    std::vector<std::byte> bytes(largestLinkMessage);
    // Room for the credentials alone: descriptors that somebody sends along do not fit and are closed by the kernel.
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(ucred))] = {};
    iovec data{bytes.data(), bytes.size()};
    msghdr message{};
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    const auto length = uninterrupted([&] { return ::recvmsg(socket, &message, MSG_CMSG_CLOEXEC); });
    Received received;
    received.nothing = length < 0 && errno == EAGAIN;
    received.ended = length <= 0 && !received.nothing;
    if (length <= 0)
        return received;
    readCredentials(message, received);
    if ((message.msg_flags & MSG_TRUNC) == 0)
        received.request = decodeRequest(std::span(bytes).first(static_cast<std::size_t>(length)));
    return received;
}

bool answer(int socket, const LinkAnswer& what)
{
    const auto bytes = encode(what);
    return uninterrupted([&] { return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL); }) ==
           static_cast<ssize_t>(bytes.size());
}

// Every message brings its sender along, and waiting for one ends every other second to look after the caller.
bool prepare(int socket)
{
    constexpr int on = 1;
    constexpr timeval patience{2, 0};
    return ::setsockopt(socket, SOL_SOCKET, SO_PASSCRED, &on, sizeof on) == 0 &&
           ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) == 0;
}

}  // namespace

std::optional<LinkServer> LinkServer::make(Caller caller, const std::string& folder)
{
    const auto names = namesOfAbsolute(folder);
    if (!names || makePosixPathRules()->rootIsProtected(folder))
        return std::nullopt;
    FileHandle opened;
    bool seen = false;
    const bool acted = caller.act([&] {
        opened = stepDown(openSystemRoot(), *names);
        seen = opened.valid() && mayList(opened);
    });
    return acted && seen ? std::optional(LinkServer(std::move(caller), std::move(opened))) : std::nullopt;
}

bool LinkServer::serve(int socket)
{
    if (!prepare(socket))
        return false;
    for (;;) {
        const Received received = receive(socket);
        // A descriptor that the caller left to a child of its own would keep the socket open beyond its end.
        if (received.ended || ::getppid() != caller_.process())
            return true;
        if (received.nothing)
            continue;
        const bool ours = received.sender == caller_.process() && received.user == caller_.user();
        if (!ours || !received.request || !accepts(*received.request)) {
            static_cast<void>(answer(socket, {LinkOutcome::badRequest, 0}));
            return false;
        }
        if (received.request->kind == LinkRequestKind::leave || !answer(socket, carryOut(*received.request)))
            return true;
    }
}

LinkAnswer LinkServer::carryOut(const LinkRequest& request) const
{
    return request.kind == LinkRequestKind::make ? makeLink(request.link, request.target)
                                                 : LinkAnswer{LinkOutcome::done, 0};
}

bool LinkServer::accepts(const LinkRequest& request)
{
    if (request.kind != LinkRequestKind::greet)
        return secret_ && sameSecret(*secret_, request.secret);
    const bool first = !secret_.has_value() && request.secret != LinkSecret{};
    secret_ = request.secret;
    return first;
}

LinkAnswer LinkServer::makeLink(const std::string& link, const std::string& target) const
{
    std::optional<Place> place;
    if (!caller_.act([&] { place = seenByCaller(link, target); }) || !place)
        return {LinkOutcome::notSeen, 0};
    // A name that is taken stays as it is: the call never replaces anything.
    if (::symlinkat(target.c_str(), place->folder.get(), place->name.c_str()) != 0)
        return {LinkOutcome::failed, errno};
    // Whoever asked for the link owns it. A file system without owners is no failure.
    static_cast<void>(
        ::fchownat(place->folder.get(), place->name.c_str(), caller_.user(), caller_.group(), AT_SYMLINK_NOFOLLOW));
    return {LinkOutcome::done, 0};
}

std::optional<LinkServer::Place> LinkServer::seenByCaller(const std::string& link, const std::string& target) const
{
    auto names = namesOf(link);
    auto targetNames = namesOfAbsolute(target);
    if (!names || !targetNames || !leadsToFileOrFolder(openSystemRoot(), std::move(*targetNames)))
        return std::nullopt;
    std::string name = std::move(names->back());
    names->pop_back();
    FileHandle folder = stepDown(folder_, *names);
    if (!folder.valid() || !mayList(folder))
        return std::nullopt;
    return Place{std::move(folder), std::move(name)};
}

}  // namespace kelvane::linux_os
