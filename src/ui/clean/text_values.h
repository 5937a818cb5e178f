// Numbers, sizes, times and paths as people read them.
#pragma once

#include <QString>
#include <cstdint>
#include <filesystem>
#include <string_view>

#include "base/file_time.h"
#include "base/result.h"
#include "base/text_table.h"
#include "results/results_model.h"

namespace kelvane {

[[nodiscard]] QString countedItems(std::uint64_t count);
[[nodiscard]] QString countedGroups(std::uint64_t count);
[[nodiscard]] QString sizeShown(std::uint64_t bytes);
// In the person's own format; empty for an unknown time.
[[nodiscard]] QString timeShown(FileTime time);
[[nodiscard]] QString pathShown(const std::filesystem::path& path);
// A path as path rules hold it.
[[nodiscard]] QString pathShown(std::string_view bytes);
// The system's words for an error.
[[nodiscard]] QString errorShown(const Error& error);

}  // namespace kelvane
