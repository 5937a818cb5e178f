// The language that the console program speaks.
#pragma once

#include "platform/platform.h"

namespace kelvane {

// Whether the settings in force let a translation be used; so they do unless a person turned it off.
[[nodiscard]] bool translationWanted(Platform& platform);

// Puts an installed translation in force where one is wanted. Before anything is said.
void chooseLanguage(Platform& platform);

}  // namespace kelvane
