// The chapter of the user guide on clean-ups.
#pragma once

namespace kelvane {

class WindowLink;

void openCleanupHelp(WindowLink& link);

}  // namespace kelvane
