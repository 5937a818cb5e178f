// Who owns a file, in 32 bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/result.h"

namespace kelvane::windows_os {

// Windows names an account by a long security identifier. Its number here is the CRC of that identifier: the same in
// every run, and shared by two accounts only by a rare accident. Thread-safe.
class Owners {
public:
    // The number of the owner, who is remembered; 0 where the file system keeps none or does not tell.
    [[nodiscard]] std::uint32_t ownerOf(const std::wstring& systemPath);

    // Of a number that ownerOf() gave.
    [[nodiscard]] Result<std::u16string> nameOf(std::uint32_t owner);

private:
    std::mutex mutex_;
    std::unordered_map<std::uint32_t, std::vector<std::byte>> identifiers_;
};

}  // namespace kelvane::windows_os
