// Looks into another process: its memory and what /proc tells of it. For a process that may be broken: every size has a
// bound, and nothing read is trusted.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

class ProcessReader {
public:
    explicit ProcessReader(pid_t process);

    [[nodiscard]] pid_t process() const { return process_; }

    // As many of the bytes as can be read from the address on.
    [[nodiscard]] std::vector<std::byte> memory(std::uint64_t address, std::size_t size) const;

    template <class Plain>
    [[nodiscard]] std::optional<Plain> object(std::uint64_t address) const
    {
        static_assert(std::is_trivially_copyable_v<Plain>);
        const std::vector<std::byte> bytes = memory(address, sizeof(Plain));
        if (bytes.size() != sizeof(Plain))
            return std::nullopt;
        Plain plain;
        std::memcpy(&plain, bytes.data(), sizeof plain);
        return plain;
    }

    // A file of its folder in /proc, from its beginning; empty when it cannot be read.
    [[nodiscard]] std::string file(const char* name, std::size_t limit) const;

    // The running program's path.
    [[nodiscard]] std::string program() const;

    [[nodiscard]] std::vector<pid_t> threads() const;

private:
    [[nodiscard]] std::string path(const char* name) const;

    pid_t process_;
    FileHandle memory_;
};

}  // namespace kelvane::linux_os
