// The settings that reach the engine, as its plain options.
#pragma once

#include "app/settings.h"
#include "engine/engine_options.h"

namespace kelvane {

// Everything that the settings say about a scan: for the desktop program, which starts from the stored definition.
[[nodiscard]] EngineOptions engineOptionsFrom(const Settings& settings);

// Only the numbers, how texts are taken, the masks of the five categories and the volumes to leave out: what may change
// how a scan of the console program goes about its work, but not which kinds of files it looks at by itself.
void applyEngineNumbers(const Settings& settings, EngineOptions& options);

}  // namespace kelvane
