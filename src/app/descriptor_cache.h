// The cache between runs, as the settings want it.
#pragma once

#include <memory>
#include <mutex>
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

// One cache for whatever a run describes, opened when something is first looked for in it: most runs never do. Without
// one nothing is found and nothing kept. Thread-safe. What is handed over outlives it; it is written at the end.
class DescriptorCache final : public RunCache {
public:
    // used: false: there is none, whatever the settings say.
    DescriptorCache(bool used, const Settings& settings, RunCaches& caches);
    ~DescriptorCache() override;

    [[nodiscard]] std::optional<std::vector<std::byte>> find(const RunCacheKey& key) override;
    void put(const RunCacheKey& key, std::span<const std::byte> value) override;
    void flush() override;

    // As in OpenedRunCache; empty as long as nothing was looked for.
    [[nodiscard]] std::string problem() const;

private:
    [[nodiscard]] RunCache* cache();

    const bool used_;
    const Settings& settings_;
    RunCaches& caches_;
    mutable std::mutex mutex_;  // over the opening
    bool tried_ = false;
    OpenedRunCache opened_;
};

}  // namespace kelvane
