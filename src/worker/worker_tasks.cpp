#include "worker/worker_tasks.h"

#include "text/document_extractor.h"
#include "text/loaded_plugins.h"
#include "text/plugin_task.h"
#include "text/worker_task.h"

namespace kelvane {
namespace {

// Nothing for a request that is malformed.
using Answer = std::optional<std::vector<std::byte>>;

Answer answerExtraction(const WorkerRequest& request, WorkerPlatform& platform)
{
    const auto wanted = decodeExtractionRequest(request.message);
    if (!wanted)
        return std::nullopt;
    ExtractionOptions options;
    options.textSample = wanted->textSample;
    options.largestStream = wanted->largestStream;
    const DocumentServices services{platform.decoding(), platform.xml(), platform.packages(), platform.filters(),
                                    options};
    return encodeDocument(extractDocument(*request.file, wanted->fileName, services));
}

Answer answerPlugins(const WorkerRequest& request, PluginAccess& plugins)
{
    std::vector<std::byte> answer = answerPluginRequest(request.message, plugins);
    return answer.empty() ? Answer() : Answer(std::move(answer));
}

Answer answerTo(const WorkerRequest& request, WorkerPlatform& platform, PluginAccess& plugins)
{
    const auto task = taskOf(request.message);
    if (!task)
        return std::nullopt;
    switch (*task) {
    case WorkerTask::extractDocument:
        return answerExtraction(request, platform);
    case WorkerTask::readPluginFields:
        return answerPlugins(request, plugins);
    }
    return std::nullopt;
}

}  // namespace

bool serveRequests(WorkerPlatform& platform)
{
    const auto plugins = makeLoadedPlugins(platform.libraries(), platform.decoding());
    while (const auto request = platform.requests().next()) {
        const Answer answer = answerTo(*request, platform, *plugins);
        if (!answer || !platform.requests().answer(*answer))
            return false;
    }
    return true;
}

}  // namespace kelvane
