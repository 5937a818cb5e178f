// From the place where settings are kept to the settings that the program works with.
#pragma once

#include "app/questions.h"
#include "app/settings.h"
#include "app/settings_context.h"
#include "app/settings_node.h"

namespace kelvane {

// Whether nothing was ever saved there.
[[nodiscard]] bool isFirstRun(const SettingsRoot& root);

// The bits of binFlags that an answer stands for.
[[nodiscard]] std::uint32_t interfaceBits(InterfaceMode mode);

// Every row of the table, then the rules between them. Never fails, and writes nothing.
[[nodiscard]] Settings loadSettings(const SettingsRoot& root, const SettingsContext& context);

// One more use of the program. A newer version than the one that saved last starts its counts anew, and takes updates
// for looked for now. Where only bookkeeping is kept no version was ever saved: there the count of uses goes on.
void countStart(Settings& settings, const SettingsContext& context);

}  // namespace kelvane
