// What the memory of a process is made of, and the modules (program and libraries) in it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/minidump_content.h"
#include "platform/linux/process_reader.h"

namespace kelvane::linux_os {

struct MappedRange {
    std::uint64_t start = 0;
    std::uint64_t end = 0;  // first address behind it
    bool readable = false;
    bool executable = false;
    std::uint64_t offset = 0;  // in the file
    std::string path;          // of the file, or a name in brackets, or empty

    [[nodiscard]] bool holds(std::uint64_t address) const { return start <= address && address < end; }
};

// From the text of /proc/PID/maps, in the order of the addresses; lines that are no ranges are left out.
[[nodiscard]] std::vector<MappedRange> parseMaps(std::string_view text);

// The executable files among the ranges, with their build ids as they stand in memory; the process's program first.
[[nodiscard]] std::vector<DumpedModule> modulesIn(const std::vector<MappedRange>& ranges, const ProcessReader& reader);

}  // namespace kelvane::linux_os
