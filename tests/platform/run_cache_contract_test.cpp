#include "platform/run_cache_contract.h"

#include <thread>

#include "support/memory_run_cache.h"

namespace kelvane::testing {
namespace {

class MemoryWorld final : public RunCacheWorld {
public:
    std::unique_ptr<RunCaches> caches() override { return std::make_unique<Shared>(kept_); }

private:
    class Shared final : public RunCaches {
    public:
        explicit Shared(RunCaches& caches) : caches_(caches) {}
        Result<std::unique_ptr<RunCache>> open(std::uint64_t bytes) override { return caches_.open(bytes); }
        Result<RunCacheFigures> figures() override { return caches_.figures(); }
        Status clear() override { return caches_.clear(); }

    private:
        RunCaches& caches_;
    };
    MemoryRunCaches kept_;
};

INSTANTIATE_TEST_SUITE_P(Memory, RunCacheContract,
                         ::testing::Values(RunCacheKind{"Memory", std::make_unique<MemoryWorld>}));

TEST_P(RunCacheContract, FindsWhatWasPutNowAndInTheNextRun)
{
    const CachedValue values[] = {cachedText("some text, some text, some text"), {}, cachedNoise(300'000, 1)};
    {
        const auto cache = world_->open();
        EXPECT_EQ(cache->find(cacheKey(0)), std::nullopt);
        for (std::size_t index = 0; index < std::size(values); ++index) {
            cache->put(cacheKey(index), values[index]);
            EXPECT_EQ(cache->find(cacheKey(index)), values[index]) << "before it is written";
        }
        cache->flush();
        EXPECT_EQ(cache->find(cacheKey(2)), values[2]);
        cache->put(cacheKey(3), cachedText("put last"));
    }
    const auto cache = world_->open();
    for (std::size_t index = 0; index < std::size(values); ++index)
        EXPECT_EQ(cache->find(cacheKey(index)), values[index]) << index;
    EXPECT_EQ(cache->find(cacheKey(3)), cachedText("put last")) << "what was due is written at the end";
}

TEST_P(RunCacheContract, AFileThatChangedIsAnother)
{
    const RunCacheKey key = cacheKey(1);
    std::vector<RunCacheKey> others(7, key);
    others[0].kind = static_cast<CachedKind>(2);
    others[1].identity.volume = 8;
    others[2].identity.index = UINT64_MAX;
    others[3].size.bytes += 1;
    others[4].modified.ticks -= 1;
    others[5].changed.ticks = 0;
    others[6].shape ^= 1u;
    world_->open()->put(key, cachedText("as it was"));
    const auto cache = world_->open();
    for (std::size_t index = 0; index < others.size(); ++index)
        EXPECT_EQ(cache->find(others[index]), std::nullopt) << index;
    EXPECT_EQ(cache->find(key), cachedText("as it was"));

    cache->put(others[3], cachedText("as it is"));
    cache->flush();
    EXPECT_EQ(cache->find(key), std::nullopt) << "one file keeps one value";
    EXPECT_EQ(world_->caches()->figures()->values, 1u);
    cache->put(others[2], cachedText("another file"));
    cache->flush();
    EXPECT_EQ(cache->find(others[3]), cachedText("as it is"));
    EXPECT_EQ(cache->find(others[2]), cachedText("another file"));
}

TEST_P(RunCacheContract, FilesWithoutAnIdentityAreNotKept)
{
    RunCacheKey key = cacheKey(0);
    key.identity = {};
    const auto cache = world_->open();
    cache->put(key, cachedText("whose?"));
    EXPECT_EQ(cache->find(key), std::nullopt);
    cache->flush();
    EXPECT_EQ(world_->caches()->figures()->values, 0u);
}

TEST_P(RunCacheContract, ClearingEmptiesItAlsoForThoseThatUseIt)
{
    const auto caches = world_->caches();
    EXPECT_EQ(caches->figures()->values, 0u);
    EXPECT_EQ(caches->figures()->bytes, 0u);
    EXPECT_TRUE(caches->clear());

    const auto cache = world_->open();
    for (std::uint64_t index = 1; index <= 10; ++index)
        cache->put(cacheKey(index), cachedNoise(1000, 1));
    cache->flush();
    EXPECT_EQ(caches->figures()->values, 10u);
    EXPECT_GE(caches->figures()->bytes, 10'000u);
    EXPECT_TRUE(caches->clear());
    EXPECT_EQ(caches->figures()->values, 0u);
    EXPECT_EQ(caches->figures()->bytes, 0u);

    cache->put(cacheKey(11), cachedText("new"));
    cache->flush();
    EXPECT_EQ(cache->find(cacheKey(11)), cachedText("new"));
    EXPECT_EQ(caches->figures()->values, 1u);
    EXPECT_EQ(world_->open()->find(cacheKey(1)), std::nullopt);
}

TEST_P(RunCacheContract, ThreadsShareOne)
{
    constexpr std::uint64_t each = 80;
    const auto cache = world_->open();
    const auto work = [&](std::uint32_t part) {
        for (std::uint64_t index = part * each; index < (part + 1) * each; ++index) {
            cache->put(cacheKey(index), cachedNoise(20'000, part));
            EXPECT_EQ(cache->find(cacheKey(index)), cachedNoise(20'000, part));
        }
        cache->flush();
    };
    std::vector<std::thread> threads;
    for (const std::uint32_t part : {0u, 1u, 2u, 3u})
        threads.emplace_back(work, part);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(world_->caches()->figures()->values, 4 * each);
    EXPECT_EQ(cache->find(cacheKey(0)), cachedNoise(20'000, 0));
}

}  // namespace
}  // namespace kelvane::testing
