// Another program for texts.
#pragma once

#include <string>

#include "platform/processes.h"
#include "platform/shell_item.h"

namespace kelvane {

// In this program, else (empty) in the one that the desktop has for such files. Gives what went wrong, for a person;
// empty where nothing did.
[[nodiscard]] std::u16string openInTextViewer(const ShellItem& item, const std::u16string& viewer,
                                              Processes& processes);

}  // namespace kelvane
