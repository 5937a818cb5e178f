// The calls of org.freedesktop.Application as requests to the program.
#pragma once

#include <gio/gio.h>

#include <string_view>
#include <vector>

#include "platform/desktop_activation.h"

namespace kelvane::linux_os {

// Files that one call may open; each becomes a window.
inline constexpr std::size_t mostFilesAtOnce = 100;

// The interface in the notation of D-Bus.
[[nodiscard]] const char* applicationInterfaceXml();

// What the call asks for, in order. `invalid` for an action that is not listed, for addresses that are no files, and
// for too many of them: then nothing of the call is done. The parameters have the types of the interface.
[[nodiscard]] Result<std::vector<DesktopRequest>> requestsOf(std::string_view method, GVariant* parameters,
                                                             const std::vector<DesktopAction>& actions);

}  // namespace kelvane::linux_os
