#include "app/descriptor_cache.h"

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

}  // namespace kelvane
