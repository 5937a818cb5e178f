// Paths as tests write and compare them, "/" between components: on a system with other paths they are turned there and
// back.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/native_text.h"

namespace kelvane::testing {

inline constexpr bool pathsArePosix = std::filesystem::path::preferred_separator == '/';

[[nodiscard]] inline NativeString native(std::string_view path)
{
    return nativeFromBytes(path);
}

[[nodiscard]] inline std::string posix(const NativeString& path)
{
    std::string bytes = bytesFromNative(path);
    std::replace(bytes.begin(), bytes.end(), static_cast<char>(std::filesystem::path::preferred_separator), '/');
    return bytes;
}
[[nodiscard]] inline std::string posix(NativeView path)
{
    return posix(NativeString(path));
}
[[nodiscard]] inline std::string posix(const std::filesystem::path& path)
{
    return posix(path.native());
}

}  // namespace kelvane::testing
