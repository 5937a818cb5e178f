#include "platform/instance_port.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "platform/linux/adapters.h"
#include "platform/linux/local_socket.h"
#include "platform/linux/name_lock.h"
#include "platform/linux/os_error.h"
#include "platform/linux/port_server.h"
#include "platform/linux/runtime_folder.h"

namespace kelvane {
namespace {

using linux_os::FileHandle;
using linux_os::NameLock;
using linux_os::osError;
using std::chrono::steady_clock;
using std::filesystem::path;

// Between two looks for a holder that has the name but does not listen yet.
constexpr std::chrono::milliseconds startingPause{5};

constexpr std::size_t longestName = 60;

// It becomes the name of a file.
bool isPortName(std::string_view name)
{
    const auto allowed = [](unsigned char c) { return c < 0x80 && (std::isalnum(c) || c == '_' || c == '-'); };
    return !name.empty() && name.size() <= longestName && std::all_of(name.begin(), name.end(), allowed);
}

Error badName()
{
    return {ErrorKind::invalid, 0, "not a name for a port"};
}

struct PortFiles {
    path socket;
    path lock;
};

PortFiles filesOf(const path& folder, std::string_view name)
{
    const path socket = folder / name;
    return {socket, path(socket.native() + ".lock")};
}

// Only by the holder of the lock, so that no socket in use is removed.
Status removeStaleSocket(const path& socket)
{
    struct stat facts {};
    if (::lstat(socket.c_str(), &facts) != 0)
        return errno == ENOENT ? Status() : osError(errno);
    if (facts.st_uid != ::geteuid())
        return linux_os::heldByOthers();
    if (!S_ISSOCK(facts.st_mode))
        return Error{ErrorKind::wrongType, 0, "something else has the name"};
    return ::unlink(socket.c_str()) == 0 ? Status() : osError(errno);
}

class SocketPort final : public InstancePort {
public:
    SocketPort(path socket, NameLock lock, FileHandle listening, FileHandle stop, InstancePorts::Handler handler)
        : lock_(std::move(lock)),
          file_(std::move(socket)),
          server_(std::move(listening), std::move(stop), std::move(handler))
    {
    }

private:
    // Takes the socket away before the lock goes, and after the last message was answered.
    struct SocketFile {
        explicit SocketFile(path socket) : name(std::move(socket)) {}
        ~SocketFile() { ::unlink(name.c_str()); }
        SocketFile(const SocketFile&) = delete;
        SocketFile& operator=(const SocketFile&) = delete;
        path name;
    };

    NameLock lock_;
    SocketFile file_;
    linux_os::PortServer server_;
};

// Somebody holds the name but does not listen yet, or not any more, or is asked by very many at once.
bool mayListenSoon(const Error& error, const path& lockFile)
{
    const bool nobodyListens = error.systemCode == ENOENT || error.systemCode == ECONNREFUSED;
    return error.systemCode == EAGAIN || (nobodyListens && linux_os::isLocked(lockFile));
}

Result<FileHandle> connectToHolder(const PortFiles& files, linux_os::Deadline deadline)
{
    for (;;) {
        auto socket = linux_os::connectTo(files.socket);
        if (socket)
            return socket;
        if (!mayListenSoon(socket.error(), files.lock))
            return socket.error().systemCode == ECONNREFUSED ? osError(ENOENT) : socket.error();
        if (steady_clock::now() >= deadline)
            return linux_os::timedOut();
        std::this_thread::sleep_for(startingPause);
    }
}

Result<std::uint32_t> exchange(const FileHandle& socket, const std::vector<std::byte>& frame,
                               linux_os::Deadline deadline)
{
    if (!linux_os::peerOfSameUser(socket))
        return linux_os::heldByOthers();
    if (const Status status = linux_os::sendAll(socket, frame, deadline); !status)
        return status.error();
    std::array<std::byte, portAnswerSize> bytes{};
    if (const Status status = linux_os::receiveAll(socket, bytes, deadline); !status)
        return status.error();
    if (const auto value = parseAnswer(bytes))
        return *value;
    return Error{ErrorKind::invalid, 0, "the other process does not speak this program's language"};
}

class SocketPorts final : public InstancePorts {
public:
    explicit SocketPorts(linux_os::RuntimePlaces places) : places_(std::move(places)) {}

    Result<std::unique_ptr<InstancePort>> claim(std::string_view name, Handler handler) override
    {
        if (!isPortName(name))
            return badName();
        const auto folder = linux_os::makeRuntimeFolder(places_);
        if (!folder)
            return folder.error();
        const PortFiles files = filesOf(*folder, name);
        auto lock = NameLock::take(files.lock);
        if (!lock)
            return lock.error();
        if (const Status status = removeStaleSocket(files.socket); !status)
            return status.error();
        return serve(files.socket, std::move(*lock), std::move(handler));
    }

    Result<std::uint32_t> send(std::string_view name, const PortMessage& message,
                               std::chrono::milliseconds timeout) override
    {
        if (!isPortName(name))
            return badName();
        const auto frame = frameMessage(message);
        if (!frame)
            return Error{ErrorKind::invalid, 0, "the message is too long"};
        const auto folder = linux_os::findRuntimeFolder(places_);
        if (!folder)
            return folder.error();
        const auto deadline = steady_clock::now() + timeout;
        const auto socket = connectToHolder(filesOf(*folder, name), deadline);
        return socket ? exchange(*socket, *frame, deadline) : socket.error();
    }

    bool isHeld(std::string_view name) override
    {
        const auto folder = linux_os::findRuntimeFolder(places_);
        return isPortName(name) && folder && linux_os::isLocked(filesOf(*folder, name).lock);
    }

private:
    static Result<std::unique_ptr<InstancePort>> serve(const path& socket, NameLock lock, Handler handler)
    {
        FileHandle stop(::eventfd(0, EFD_CLOEXEC));
        if (!stop.valid())
            return osError(errno);
        auto listening = linux_os::listenAt(socket);
        if (!listening)
            return listening.error();
        try {
            return std::unique_ptr<InstancePort>(std::make_unique<SocketPort>(
                socket, std::move(lock), std::move(*listening), std::move(stop), std::move(handler)));
        } catch (const std::system_error& error) {
            return osError(error.code().value());
        }
    }

    linux_os::RuntimePlaces places_;
};

}  // namespace

std::unique_ptr<InstancePorts> makeSocketPorts(const path& offeredFolder, const path& temporaryFolder)
{
    return std::make_unique<SocketPorts>(linux_os::RuntimePlaces{offeredFolder, temporaryFolder});
}

}  // namespace kelvane
