// What the desktop asks of the program goes through the same door as the command line of a second start.
#pragma once

#include <cstdint>
#include <string>

#include "platform/desktop_activation.h"
#include "platform/instance_port.h"

namespace kelvane {

// A handler that hands each request to the holder of the port, which is this process where it serves the desktop. One
// that is not taken is dropped, as a click on a program that is ending is. The token for the foreground stays behind: a
// hand-over has no room for it. The ports must outlive the handler.
[[nodiscard]] DesktopActivation::Handler handOverRequests(InstancePorts& ports, std::string portName,
                                                          std::uint32_t showCommand);

}  // namespace kelvane
