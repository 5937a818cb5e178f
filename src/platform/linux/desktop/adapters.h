// The factories of the adapters that only a program with windows is linked with. They stand apart from the others,
// because they need GLib: loading it takes longer than all else at the start of the console program.
#pragma once

#include <memory>
#include <string>

#include "platform/desktop_activation.h"

namespace kelvane {

// The address of the session's message bus as the environment tells it; empty without one. None is started.
[[nodiscard]] std::string sessionBusAddress();

// By D-Bus, as the Desktop Entry Specification's "D-Bus Activation" says. The name on the bus, and the object's path,
// are those of the application id that the program was built with.
[[nodiscard]] std::unique_ptr<DesktopActivation> makeDBusActivation(std::string busAddress);

}  // namespace kelvane
