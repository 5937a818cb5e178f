#include "ui/core/list_session.h"

#include <utility>

namespace kelvane {

ListSession::ListSession(Platform& platform, Settings kept, EngineOptions wanted, const CancelFlag& cancel)
    : settings(std::move(kept)),
      options(std::move(wanted)),
      cache(true, settings, platform.runCaches()),
      access(platform, options, &cache, &cancel),
      similar(access, ProbeNumbers::perPair, options.threads, platform)
{
}

}  // namespace kelvane
