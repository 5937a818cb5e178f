#include "platform/linux/local_socket.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>

#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

using std::chrono::milliseconds;

// Starts of the program that may wait while a message is handled.
constexpr int waitingConnections = 64;

FileHandle makeSocket()
{
    return FileHandle(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

// Until `events` can be done, or an error that the next call will tell of.
Status waitFor(const FileHandle& socket, short events, Deadline deadline)
{
    pollfd wanted{socket.get(), events, 0};
    const int ready = uninterrupted([&] { return ::poll(&wanted, 1, millisecondsUntil(deadline)); });
    if (ready < 0)
        return osError(errno);
    return ready == 0 ? Status(timedOut()) : Status();
}

Error hungUp()
{
    return osError(ECONNRESET);
}

// Calls `step` for the bytes that are left until none are. It gives what it moved, as send() and recv() do.
template <class Bytes, class Step>
Status moveAll(const FileHandle& socket, Bytes bytes, short events, Deadline deadline, Step step)
{
    while (!bytes.empty()) {
        const ssize_t moved = uninterrupted([&] { return step(bytes); });
        if (moved == 0)
            return hungUp();
        if (moved > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(moved));
            continue;
        }
        if (errno != EAGAIN && errno != EWOULDBLOCK)
            return osError(errno);
        if (const Status status = waitFor(socket, events, deadline); !status)
            return status;
    }
    return {};
}

}  // namespace

Result<LocalAddress> LocalAddress::make(const std::filesystem::path& path)
{
    LocalAddress made;
    std::string text = path.native();
    if (text.size() >= sizeof made.address_.sun_path) {
        made.folder_ = FileHandle(::open(path.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!made.folder_.valid())
            return osError(errno);
        text = "/proc/self/fd/" + std::to_string(made.folder_.get()) + "/" + path.filename().native();
    }
    if (text.size() >= sizeof made.address_.sun_path)
        return osError(ENAMETOOLONG);
    made.address_.sun_family = AF_UNIX;
    std::copy(text.begin(), text.end(), made.address_.sun_path);
    return made;
}

Result<FileHandle> listenAt(const std::filesystem::path& path)
{
    const auto address = LocalAddress::make(path);
    if (!address)
        return address.error();
    FileHandle socket = makeSocket();
    if (!socket.valid() || ::bind(socket.get(), address->get(), address->size()) != 0 ||
        ::chmod(path.c_str(), 0600) != 0 || ::listen(socket.get(), waitingConnections) != 0)
        return osError(errno);
    return socket;
}

Result<FileHandle> connectTo(const std::filesystem::path& path)
{
    const auto address = LocalAddress::make(path);
    if (!address)
        return address.error();
    FileHandle socket = makeSocket();
    if (!socket.valid())
        return osError(errno);
    if (uninterrupted([&] { return ::connect(socket.get(), address->get(), address->size()); }) != 0)
        return osError(errno);
    return socket;
}

std::optional<pid_t> peerOfSameUser(const FileHandle& socket)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    const bool known = ::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
    return known && peer.uid == ::geteuid() ? std::optional(peer.pid) : std::nullopt;
}

Status sendAll(const FileHandle& socket, std::span<const std::byte> bytes, Deadline deadline)
{
    return moveAll(socket, bytes, POLLOUT, deadline,
                   [&](auto rest) { return ::send(socket.get(), rest.data(), rest.size(), MSG_NOSIGNAL); });
}

Status receiveAll(const FileHandle& socket, std::span<std::byte> bytes, Deadline deadline)
{
    return moveAll(socket, bytes, POLLIN, deadline,
                   [&](auto rest) { return ::recv(socket.get(), rest.data(), rest.size(), 0); });
}

Error timedOut()
{
    return osError(ETIMEDOUT);
}

int millisecondsUntil(Deadline deadline)
{
    const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
}

}  // namespace kelvane::linux_os
