// What a minidump tells of a process, before it takes the form of a file.
#pragma once

#include <sys/types.h>
#include <sys/user.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelvane::linux_os {

struct DumpedMemory {
    std::uint64_t address = 0;
    std::vector<std::byte> bytes;
    [[nodiscard]] std::uint64_t end() const { return address + bytes.size(); }
};

struct DumpedThread {
    pid_t id = 0;
    user_regs_struct registers{};
    user_fpregs_struct floating{};
    DumpedMemory stack;  // from the stack pointer up; empty when it could not be read
};

struct DumpedModule {
    std::uint64_t address = 0;
    std::uint64_t size = 0;
    std::string path;
    std::vector<std::byte> buildId;  // of the file's note; empty without one
};

struct DumpedFault {
    std::size_t thread = 0;  // which of the threads
    int signal = 0;
    int code = 0;               // si_code
    std::uint64_t address = 0;  // what could not be read, written or carried out
};

struct DumpedSystem {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
    std::uint32_t processors = 1;
    std::string text;
};

struct DumpedProcess {
    pid_t id = 0;
    std::int64_t unixTime = 0;
    DumpedSystem system;
    std::optional<DumpedFault> fault;
    std::vector<DumpedThread> threads;
    std::vector<DumpedModule> modules;  // the program itself first
    std::vector<DumpedMemory> memory;   // beside the stacks
    std::string maps;                   // files of /proc, as they are
    std::string commandLine;
    std::string auxiliaryVector;
    std::string status;
};

}  // namespace kelvane::linux_os
