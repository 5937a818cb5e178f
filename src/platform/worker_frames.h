// How a worker and the program speak, over a socket or a pipe.
//
// A message is a header of three 32-bit numbers, lowest byte first (magic, serial, length), and as many bytes as the
// length says. The worker greets first, with serial 0. Each request has a serial of its own and one open file with its
// first byte; the answer repeats the serial.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/worker_processes.h"

namespace kelvane {

inline constexpr int workerSocket = 3;        // on Linux: the descriptor that a worker is started with
inline constexpr int workerOutOfMemory = 71;  // its exit code when memory was refused
inline constexpr std::size_t workerHeaderSize = 12;
inline constexpr std::uint32_t longestWorkerRequest = 1 << 20;

struct WorkerHeader {
    std::uint32_t serial = 0;
    std::uint32_t length = 0;
};

[[nodiscard]] std::vector<std::byte> frameWorkerMessage(std::uint32_t serial, std::span<const std::byte> message);
// Nothing for what is no header of ours.
[[nodiscard]] std::optional<WorkerHeader> parseWorkerHeader(std::span<const std::byte, workerHeaderSize> bytes);

// The greeting: which version of all this the worker speaks, and which walls it found.
[[nodiscard]] std::vector<std::byte> encodeGreeting(const WorkerConfinement& confinement);
[[nodiscard]] std::optional<WorkerConfinement> decodeGreeting(std::span<const std::byte> message);
inline constexpr std::uint32_t workerGreetingSize = 8;

// As its file is called, without an extension.
[[nodiscard]] std::string_view workerProgramName(WorkerProgram program);

// The words on a worker's command line, which program it is apart.
[[nodiscard]] std::array<std::string, 2> workerArguments(const WorkerLimits& limits);
[[nodiscard]] std::optional<WorkerLimits> parseWorkerArguments(int count, char** words);

}  // namespace kelvane
