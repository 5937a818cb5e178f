// What the headless program and the tests that start it agree upon.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "base/crc32.h"
#include "platform/native_text.h"

namespace kelvane::testing {

// The port of the processes with this log, as CXApplication takes it.
[[nodiscard]] inline std::string headlessPortBase(const std::filesystem::path& log)
{
    const std::string bytes = bytesFromNative(log.native());
    return "kelvane_headless_" + std::to_string(crc32(std::as_bytes(std::span(bytes))));
}

// Once this file is there, the window "crash" ends its process.
[[nodiscard]] inline std::filesystem::path headlessCrashSignal(const std::filesystem::path& log)
{
    return log.parent_path() / "crash now";
}

}  // namespace kelvane::testing
