// How the program is started again after a crash: remembered in one place of memory, where the crash watcher, another
// process, reads it once the program is past remembering anything.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kelvane::linux_os {

// Plain bytes at a fixed address. Each argument ends with a NUL.
struct RestartMemory {
    std::uint32_t wanted = 0;  // 1: start again
    std::uint32_t size = 0;    // bytes in use
    std::array<char, 4096> bytes{};
};

// Replaces what was remembered; arguments that do not fit leave nothing. Only the crash capture's watcher acts on it,
// so nothing happens in a process that did not install that. Call it on one thread at a time.
void rememberRestart(const std::vector<std::string>& arguments);

[[nodiscard]] const RestartMemory& restartMemory();

// The arguments in the bytes of a memory that may be damaged; empty unless a restart is wanted.
struct RestartWish {
    bool wanted = false;
    std::vector<std::string> arguments;
};
[[nodiscard]] RestartWish restartWish(const RestartMemory& memory);

}  // namespace kelvane::linux_os
