// The two notices that the first window may show: an offer to mail after crashes, a reminder to look for updates.
#pragma once

#include <cstdint>

#include "app/questions.h"
#include "app/settings.h"

namespace kelvane {

// Bits of Settings::noticesOff: set by the tick "do not show again".
namespace notice_off {
inline constexpr std::uint32_t updateReminder = 0x08;
inline constexpr std::uint32_t crashMail = 0x80;
}  // namespace notice_off

// To be called once in a process that was started again after a crash. Counts the crash, and offers at every fifth to
// mail it; true when the person wants that.
[[nodiscard]] bool countCrash(Settings& settings, Questions& questions);

// True when the last update check is more than 90 days ago and the person wants one now.
[[nodiscard]] bool remindOfUpdates(Settings& settings, FileTime now, Questions& questions);

}  // namespace kelvane
