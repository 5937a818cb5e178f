// The computer's system in one line, for mails to the makers.
#pragma once

#include <string>

#include "platform/places.h"

namespace kelvane {

// "10.0-22631.3007:W11 (Windows 10 Pro) x64": version, build and revision, the system's name, the processor. Windows 11
// still calls itself 10, so its number carries a mark. Without a name of its own a system gets one by its version, and
// none when that is unknown.
[[nodiscard]] std::u16string systemDescription(const SystemVersion& version);

}  // namespace kelvane
