// What reads files for previews: apart from the list's own readers, which belong to the window's thread.
#pragma once

#include "app/property_access.h"
#include "base/cancel.h"
#include "ui/core/desktop.h"

namespace kelvane {

// On the thread that reads. All that is handed over outlives it.
struct PreviewTools {
    PreviewTools(const Desktop& desktop, const CancelFlag& flag)
        : platform(desktop.platform()),
          settings(desktop.settings()),
          cancel(flag),
          options(desktop.engineOptions(settings)),
          cache(true, settings, platform.runCaches()),
          access(platform, options, &cache, &flag)
    {
    }

    Platform& platform;
    const Settings settings;
    const CancelFlag& cancel;  // set once nobody waits for the answer any more
    const EngineOptions options;
    DescriptorCache cache;
    PropertyAccess access;
};

}  // namespace kelvane
