#include "platform/linux/worker_start.h"

#include <array>
#include <cerrno>
#include <new>
#include <poll.h>
#include <sys/socket.h>
#include <thread>

#include "platform/linux/descriptor_file.h"
#include "platform/linux/os_error.h"
#include "platform/linux/worker_confinement.h"

namespace kelvane::linux_os {
namespace {

// The program's end of the socket is watched even while a document is in work: a parser that loops for ever must not
// outlive the program.
void watchForTheEnd()
{
    pollfd program{workerSocket, POLLRDHUP, 0};
    while (::poll(&program, 1, -1) <= 0)
        ;
    ::_exit(0);
}

bool isOurSocket()
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    return ::getsockname(workerSocket, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
           address.ss_family == AF_UNIX;
}

}  // namespace

Status SocketRequests::send(std::uint32_t serial, std::span<const std::byte> message)
{
    const auto frame = frameWorkerMessage(serial, message);
    for (std::span<const std::byte> rest(frame); !rest.empty();) {
        const ssize_t sent =
            uninterrupted([&] { return ::send(workerSocket, rest.data(), rest.size(), MSG_NOSIGNAL); });
        if (sent < 0)
            return osError(errno);
        rest = rest.subspan(static_cast<std::size_t>(sent));
    }
    return {};
}

bool SocketRequests::receive(std::span<std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t got = uninterrupted([&] { return ::recv(workerSocket, bytes.data(), bytes.size(), 0); });
        if (got <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(got));
    }
    return true;
}

// The file comes with the first byte; an invalid handle when the program is gone.
FileHandle SocketRequests::receiveHeader(std::span<std::byte, workerHeaderSize> bytes)
{
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    iovec part{bytes.data(), bytes.size()};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const ssize_t got = uninterrupted([&] { return ::recvmsg(workerSocket, &message, MSG_CMSG_CLOEXEC); });
    const cmsghdr* header = got > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
    if (header == nullptr || header->cmsg_type != SCM_RIGHTS)
        return {};
    FileHandle file(*reinterpret_cast<const int*>(CMSG_DATA(header)));
    return receive(bytes.subspan(static_cast<std::size_t>(got))) ? std::move(file) : FileHandle();
}

std::optional<WorkerRequest> SocketRequests::next()
{
    std::array<std::byte, workerHeaderSize> head;
    FileHandle handle = receiveHeader(head);
    const auto header = parseWorkerHeader(head);
    if (!handle.valid() || !header || header->length > longestWorkerRequest)
        return std::nullopt;
    auto file = DescriptorFile::make(std::move(handle));
    WorkerRequest request{std::vector<std::byte>(header->length), nullptr};
    if (!file || !receive(request.message))
        return std::nullopt;
    request.file = std::move(*file);
    serial_ = header->serial;
    return request;
}

Status becomeWorker(WorkerProgram program, int argumentCount, char** arguments, const std::function<void()>& prepare)
{
    auto limits = parseWorkerArguments(argumentCount, arguments);
    if (!limits || !isOurSocket())
        return Error{ErrorKind::invalid, 0, "only the program itself starts a worker"};
    limits->program = program;
    std::set_new_handler([] { ::_exit(workerOutOfMemory); });
    leaveTheProgramBehind(program);
    prepare();
    const WorkerConfinement walls = confineWorker(*limits);
    std::thread(watchForTheEnd).detach();
    return SocketRequests::greet(walls);
}

}  // namespace kelvane::linux_os
