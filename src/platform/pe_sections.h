// A look at a Windows module before the system maps it: a file that was cut short would end the program at the first
// read behind its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvane {

// So much of the beginning of a module holds its headers.
inline constexpr std::size_t peHeaderBytes = 4096;

// True when the beginning of a file of so many bytes is that of a module (the PE format of Windows) all of whose
// sections lie within the file.
[[nodiscard]] bool holdsItsSections(std::span<const std::byte> beginning, std::uint64_t fileSize) noexcept;

}  // namespace kelvane
