// Sizes as people type them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvane {

// "4096", "64K", "10M", "1G", "2T" (powers of 1024; "10MB" and "10MiB" mean the same); nothing for any other text.
[[nodiscard]] std::optional<std::uint64_t> parseSize(std::string_view text);

}  // namespace kelvane
