// The catalogue and the one source of values, wired to a platform.
#pragma once

#include "engine/engine_options.h"
#include "platform/platform.h"
#include "props/property_source.h"

namespace kelvane {

// Lives as long as the verb that asks for values; the platform outlives it.
struct PropertyAccess {
    PropertyAccess(Platform& platform, const EngineOptions& options);
    PropertyAccess(const PropertyAccess&) = delete;
    PropertyAccess& operator=(const PropertyAccess&) = delete;

    PropertyCatalogue catalogue;
    PropertySource source;
};

}  // namespace kelvane
