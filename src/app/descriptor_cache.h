// The cache between runs, as the settings want it.
#pragma once

#include <memory>
#include <string>

#include "app/settings.h"
#include "platform/run_cache.h"

namespace kelvane {

struct OpenedRunCache {
    std::unique_ptr<RunCache> cache;  // null: the work is done without
    std::string problem;              // why it cannot be used, for a person, in UTF-8; empty where nothing is wrong
};

// Null without a problem where the settings turn it off or the system has none.
[[nodiscard]] OpenedRunCache openRunCache(const Settings& settings, RunCaches& caches);

}  // namespace kelvane
