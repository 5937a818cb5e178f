// What reads files for previews: apart from the list's own readers, which belong to the window's thread.
#pragma once

#include "app/engine_settings.h"
#include "app/property_access.h"
#include "app/settings.h"
#include "base/cancel.h"
#include "platform/platform.h"

namespace kelvane {

// On the thread that reads. All that is handed over outlives it.
struct PreviewTools {
    PreviewTools(Platform& ports, const Settings& inForce, const CancelFlag& flag)
        : platform(ports),
          settings(inForce),
          cancel(flag),
          options(engineOptionsFrom(inForce)),
          cache(true, inForce, ports.runCaches()),
          access(ports, options, &cache, &flag)
    {
    }

    Platform& platform;
    const Settings& settings;
    const CancelFlag& cancel;  // set once nobody waits for the answer any more
    const EngineOptions options;
    DescriptorCache cache;
    PropertyAccess access;
};

}  // namespace kelvane
