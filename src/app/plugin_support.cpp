#include "app/plugin_support.h"

#include <algorithm>
#include <thread>

#include "text/loaded_plugins.h"
#include "text/worker_plugins.h"

namespace kelvane {
namespace {

std::unique_ptr<PluginAccess> makeAccess(Platform& platform, const ExtractionOptions& options)
{
    if (!options.worker)
        return makeLoadedPlugins(platform.libraries(), platform.decoding());
    WorkerLimits limits;
    limits.memoryBytes = options.workerMemory;
    limits.perRequest = options.timeout;
    const unsigned most = options.workers != 0 ? options.workers : std::thread::hardware_concurrency();
    return makeWorkerPlugins(platform.workers(), limits, std::max(1u, most));
}

}  // namespace

PluginSupport::PluginSupport(Platform& platform, const ExtractionOptions& options) : platform_(platform)
{
    if (options.plugins.empty())
        return;
    plugins_.emplace(makeAccess(platform, options), options.plugins, options.textSample, CancelFlag());
    properties_.emplace(platform.properties(), *plugins_);
}

const PropertySystem& PluginSupport::properties() const
{
    return properties_ ? static_cast<const PropertySystem&>(*properties_) : platform_.properties();
}

PropertyReaders& PluginSupport::readers(PropertyReaders& next)
{
    if (!plugins_)
        return next;
    readers_ = makePluginReaders(*properties_, *plugins_, next);
    return *readers_;
}

std::vector<std::string> PluginSupport::takeComplaints()
{
    return plugins_ ? plugins_->takeComplaints() : std::vector<std::string>();
}

}  // namespace kelvane
