// A cache between runs that lives in memory, and counts what is asked of it.
#pragma once

#include <map>
#include <mutex>
#include <tuple>
#include <utility>

#include "platform/run_cache.h"

namespace kelvane::testing {

// What is kept outlives the RunCache that it was put into, as a file would. Nothing is ever let go of for its size.
class MemoryRunCaches final : public RunCaches {
public:
    Result<std::unique_ptr<RunCache>> open(std::uint64_t largestBytes) override
    {
        const std::scoped_lock lock(mutex);
        ++opened;
        bound = largestBytes;
        if (failure)
            return *failure;
        return std::unique_ptr<RunCache>(std::make_unique<View>(*this));
    }
    Result<RunCacheFigures> figures() override
    {
        const std::scoped_lock lock(mutex);
        RunCacheFigures sums;
        for (const auto& [file, kept] : values) {
            ++sums.values;
            sums.bytes += kept.second.size();
        }
        return sums;
    }
    Status clear() override
    {
        const std::scoped_lock lock(mutex);
        if (failure)
            return *failure;
        values.clear();
        return {};
    }

    using Value = std::vector<std::byte>;
    using File = std::tuple<CachedKind, std::uint64_t, std::uint64_t>;

    std::optional<Error> failure;  // of open() and clear()
    std::mutex mutex;              // over all that follows
    std::map<File, std::pair<RunCacheKey, Value>> values;
    std::uint64_t bound = 0;
    int opened = 0, found = 0, missed = 0, put = 0, flushed = 0;

private:
    class View final : public RunCache {
    public:
        explicit View(MemoryRunCaches& caches) : caches_(caches) {}

        std::optional<std::vector<std::byte>> find(const RunCacheKey& key) override
        {
            const std::scoped_lock lock(caches_.mutex);
            const auto kept = caches_.values.find(fileOf(key));
            if (kept == caches_.values.end() || kept->second.first != key) {
                ++caches_.missed;
                return std::nullopt;
            }
            ++caches_.found;
            return kept->second.second;
        }
        void put(const RunCacheKey& key, std::span<const std::byte> value) override
        {
            const std::scoped_lock lock(caches_.mutex);
            ++caches_.put;
            if (key.identity.known())
                caches_.values.insert_or_assign(fileOf(key), std::pair(key, Value(value.begin(), value.end())));
        }
        void flush() override
        {
            const std::scoped_lock lock(caches_.mutex);
            ++caches_.flushed;
        }

    private:
        static File fileOf(const RunCacheKey& key) { return {key.kind, key.identity.volume, key.identity.index}; }

        MemoryRunCaches& caches_;
    };
};

}  // namespace kelvane::testing
