// What settings say to a clean-up, and what a clean-up leaves in the settings.
#pragma once

#include "app/registry_access.h"
#include "app/settings.h"
#include "cleanup/cleanup_run.h"

namespace kelvane {

// Bits of Settings::moreOptions.
namespace more_setting {
inline constexpr std::uint32_t noHardLinks = 0x4;
inline constexpr std::uint32_t noSymbolicLinks = 0x8;
inline constexpr std::uint32_t keepLone = 0x20;  // what is left of a group alone stays on the list
}  // namespace more_setting

[[nodiscard]] CleanupOptions cleanupOptionsFrom(const Settings& settings);

// Counts what was removed, remembers what is not to be shown again, and lets go of what the run made out of date: the
// saved scan of that name, and the entry of the history. Counter and saved scan are written at once where the settings
// are kept at all; no place is made for them.
[[nodiscard]] SettingsCode noteCleanup(CRegistryAccess& access, const CScanNode& definition,
                                       const CleanupReport& report);

}  // namespace kelvane
