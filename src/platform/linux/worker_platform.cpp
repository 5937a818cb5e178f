#include <array>
#include <cerrno>
#include <new>
#include <poll.h>
#include <sys/socket.h>
#include <thread>

#include "platform/linux/adapters.h"
#include "platform/linux/descriptor_file.h"
#include "platform/linux/os_error.h"
#include "platform/linux/worker_confinement.h"
#include "platform/worker_frames.h"
#include "platform/worker_requests.h"

namespace kelvane {
namespace linux_os {
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

class SocketRequests final : public WorkerRequests {
public:
    std::optional<WorkerRequest> next() override;
    Status answer(std::span<const std::byte> message) override { return send(serial_, message); }
    static Status greet(const WorkerConfinement& confinement) { return send(0, encodeGreeting(confinement)); }

private:
    static Status send(std::uint32_t serial, std::span<const std::byte> message);
    static FileHandle receiveHeader(std::span<std::byte, workerHeaderSize> bytes);
    static bool receive(std::span<std::byte> bytes);

    std::uint32_t serial_ = 0;
};

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

class LinuxWorkerPlatform final : public WorkerPlatform {
public:
    WorkerRequests& requests() override { return requests_; }
    TextDecoding& decoding() override { return *decoding_; }
    XmlParsing& xml() override { return *xml_; }
    PackagedFiles& packages() override { return *packages_; }
    FilterPrograms& filters() override { return *filters_; }
    SharedLibraries& libraries() override { return *libraries_; }

private:
    SocketRequests requests_;
    std::unique_ptr<TextDecoding> decoding_ = makeTextDecoding();
    std::unique_ptr<XmlParsing> xml_ = makePugixmlParsing();
    std::unique_ptr<PackagedFiles> packages_ = makeLibarchivePackages();
    std::unique_ptr<FilterPrograms> filters_ = makeLinuxFilterPrograms(std::chrono::milliseconds(0));
    std::unique_ptr<SharedLibraries> libraries_ = makeLinuxSharedLibraries();
};

bool isOurSocket()
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    return ::getsockname(workerSocket, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
           address.ss_family == AF_UNIX;
}

}  // namespace
}  // namespace linux_os

Result<std::unique_ptr<WorkerPlatform>> makeWorkerPlatform(int argumentCount, char** arguments)
{
    const auto limits = parseWorkerArguments(argumentCount, arguments);
    if (!limits || !linux_os::isOurSocket())
        return Error{ErrorKind::invalid, 0, "only the program itself starts a worker"};
    std::set_new_handler([] { ::_exit(workerOutOfMemory); });
    linux_os::leaveTheProgramBehind();
    // Before the walls are up: adapters may have to open something of their own.
    auto platform = std::make_unique<linux_os::LinuxWorkerPlatform>();
    const WorkerConfinement walls = linux_os::confineWorker(*limits);
    std::thread(linux_os::watchForTheEnd).detach();
    if (const Status status = linux_os::SocketRequests::greet(walls); !status)
        return status.error();
    return std::unique_ptr<WorkerPlatform>(std::move(platform));
}

}  // namespace kelvane
