// Locks between processes, as files beside what they guard.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "base/result.h"
#include "platform/file_output.h"

namespace kelvane::windows_os {

// As FileOutput::lock, for a path that is no link.
[[nodiscard]] Result<std::unique_ptr<FileLock>> lockBeside(const std::filesystem::path& path,
                                                           std::uint32_t milliseconds);

}  // namespace kelvane::windows_os
