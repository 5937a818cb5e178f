// Content plug-ins that run in this process: in a worker, or in the program itself where no worker is wanted.
#pragma once

#include <memory>

#include "platform/shared_libraries.h"
#include "platform/text_decoding.h"
#include "text/plugin_access.h"

namespace kelvane {

// Plug-ins know nothing of threads: one call at a time. They are unloaded with the object, the last loaded one first.
// Both ports outlive it.
[[nodiscard]] std::unique_ptr<PluginAccess> makeLoadedPlugins(SharedLibraries& libraries, const TextDecoding& decoding);

}  // namespace kelvane
