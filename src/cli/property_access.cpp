#include "cli/property_access.h"

namespace kelvane {
namespace {

KindMasks kindMasks(const EngineOptions& options)
{
    KindMasks kinds;
    for (const FileCategory& category : options.categories)
        kinds.emplace_back(category.name, category.masks);
    return kinds;
}

}  // namespace

PropertyAccess::PropertyAccess(Platform& platform, const EngineOptions& options)
    : catalogue(platform.properties()),
      source(catalogue, platform.shell(), platform.readers(), platform.folding(), kindMasks(options))
{
}

}  // namespace kelvane
