// The settings that are in force, to an INI file of the person's choice and back.
#pragma once

#include <filesystem>

#include "app/registry_access.h"
#include "app/settings_transfer.h"

namespace kelvane {

// What is in memory is saved first. The file is replaced value by value when it is there. The error is one to show.
[[nodiscard]] Result<TransferReport> exportSettingsTo(const std::filesystem::path& file, CRegistryAccess& settings,
                                                      Platform& platform);

// Everything that the file holds is written to the place in use, and taken into memory; what it does not hold stays.
// Nothing changes when that fails.
[[nodiscard]] Result<TransferReport> importSettingsFrom(const std::filesystem::path& file, CRegistryAccess& settings,
                                                        Platform& platform);

}  // namespace kelvane
