#include "app/descriptor_cache.h"

#include <utility>

#include "base/filled_text.h"

namespace kelvane {

OpenedRunCache openRunCache(const Settings& settings, RunCaches& caches)
{
    if (!settings.descriptorCache)
        return {};
    auto opened = caches.open(settings.descriptorCacheSize.bytes);
    if (opened)
        return {std::move(*opened), {}};
    if (opened.error().kind == ErrorKind::notSupported)
        return {};
    return {nullptr, filledText(TextId::cacheNotUsed, {opened.error().detail})};
}

DescriptorCache::DescriptorCache(bool used, const Settings& settings, RunCaches& caches)
    : used_(used), settings_(settings), caches_(caches)
{
}

DescriptorCache::~DescriptorCache()
{
    DescriptorCache::flush();
}

std::optional<std::vector<std::byte>> DescriptorCache::find(const RunCacheKey& key)
{
    RunCache* const opened = cache();
    return opened != nullptr ? opened->find(key) : std::nullopt;
}

void DescriptorCache::put(const RunCacheKey& key, std::span<const std::byte> value)
{
    if (RunCache* const opened = cache())
        opened->put(key, value);
}

void DescriptorCache::flush()
{
    const std::lock_guard lock(mutex_);
    if (opened_.cache)
        opened_.cache->flush();
}

std::string DescriptorCache::problem() const
{
    const std::lock_guard lock(mutex_);
    return opened_.problem;
}

RunCache* DescriptorCache::cache()
{
    const std::lock_guard lock(mutex_);
    if (used_ && !std::exchange(tried_, true))
        opened_ = openRunCache(settings_, caches_);
    return opened_.cache.get();
}

}  // namespace kelvane
