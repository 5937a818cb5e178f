// Stream sockets between processes of one computer, by the path of a socket file.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

#include "base/result.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

using Deadline = std::chrono::steady_clock::time_point;

// A path of any length as the system's calls take it.
class LocalAddress {
public:
    [[nodiscard]] static Result<LocalAddress> make(const std::filesystem::path& path);
    [[nodiscard]] const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address_); }
    [[nodiscard]] socklen_t size() const { return sizeof address_; }

private:
    LocalAddress() = default;

    FileHandle folder_;  // of a path that is too long
    sockaddr_un address_{};
};

// The file must not exist; it is made for its owner only.
[[nodiscard]] Result<FileHandle> listenAt(const std::filesystem::path& path);

// One attempt, without waiting; the error's code is EAGAIN when too many others are waiting.
[[nodiscard]] Result<FileHandle> connectTo(const std::filesystem::path& path);

// The process at the other end of a connection, when the same user runs it. For the one that connected it is the
// process that began to listen.
[[nodiscard]] std::optional<pid_t> peerOfSameUser(const FileHandle& socket);

// All of the bytes, or an error (ETIMEDOUT); no signal when the other end is gone.
[[nodiscard]] Status sendAll(const FileHandle& socket, std::span<const std::byte> bytes, Deadline deadline);
[[nodiscard]] Status receiveAll(const FileHandle& socket, std::span<std::byte> bytes, Deadline deadline);

[[nodiscard]] Error timedOut();

// For poll(): rounded up, 0 when it has passed.
[[nodiscard]] int millisecondsUntil(Deadline deadline);

}  // namespace kelvane::linux_os
