// Start-up's choice of the language that the program speaks.
#pragma once

#include "platform/places.h"
#include "platform/text_modules.h"

namespace kelvane {

// Whether activateTranslation() finds a module, be it a good one or not; only then does the setting for it matter.
// Packaged modules for other languages do not count: without a translation to choose there is no choice to keep.
[[nodiscard]] bool anyTranslation(TextModules& modules, const Places& places);

// Puts a translation in force when one is wanted and installed: the first module in the program's folder, or else the
// one for the person's language among those that a package installed in share/kelvane/translations, or that stand in
// translations/ beside the program as its build leaves them. A module that is damaged or holds no text 130 is passed
// over. Otherwise English is in force. Returns isTranslated(). Call on the main thread before others start.
bool activateTranslation(TextModules& modules, const Places& places, bool wanted);

}  // namespace kelvane
