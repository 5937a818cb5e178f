// What a program with windows asks of the person's session, each once and at its start; defined by the adapters that
// such a program is linked with.
#pragma once

#include <memory>

#include "platform/desktop_activation.h"

namespace kelvane {

// Whether windows can be shown at all. Where this is false, a toolkit would end the process on its own.
[[nodiscard]] bool displayIsThere();

// How this system's desktop asks a running program for something.
[[nodiscard]] std::unique_ptr<DesktopActivation> makeDesktopActivation();

}  // namespace kelvane
