#include "text/worker_plugins.h"

#include "base/filled_text.h"
#include "text/plugin_task.h"

namespace kelvane {
namespace {

Error endError(const WorkerAnswer& answer)
{
    switch (answer.end) {
    case WorkerEnd::cancelled:
        return {ErrorKind::cancelled, 0, {}};
    case WorkerEnd::timedOut:
        return {ErrorKind::io, 0, filledText(TextId::pluginTookTooLong)};
    default:
        return {ErrorKind::io, 0, filledText(TextId::pluginBrokeDown)};
    }
}

WorkerLimits forPlugins(WorkerLimits limits)
{
    limits.reach = WorkerReach::otherFiles;
    return limits;
}

class WorkerPlugins final : public PluginAccess {
public:
    WorkerPlugins(WorkerProcesses& processes, WorkerLimits limits, unsigned most)
        : pool_(processes, forPlugins(limits), most)
    {
    }

    Result<PluginDescription> describe(const std::filesystem::path& library, const CancelFlag& cancel) override
    {
        const auto message = ask({PluginAsk::describe, {library, {}, 0}, 0}, cancel);
        return message ? decodePluginDescription(*message) : Result<PluginDescription>(message.error());
    }

    Result<RawValue> value(const PluginQuestion& question, const CancelFlag& cancel) override
    {
        const auto message = ask({PluginAsk::value, question, 0}, cancel);
        return message ? decodePluginValue(*message) : Result<RawValue>(message.error());
    }

    ExtractedDocument fullText(const PluginQuestion& question, std::uint32_t characters,
                               const CancelFlag& cancel) override
    {
        ExtractedDocument text;
        const auto sensible = [&](std::span<const std::byte> message) {
            text = decodePluginText(message);
            return text.text.size() <= characters;
        };
        const auto answer = pool_.ask(encodePluginRequest({PluginAsk::fullText, question, characters}), WorkerInput{},
                                      cancel, sensible);
        if (answer && answer->end == WorkerEnd::answered)
            return text;
        ExtractedDocument none;
        none.outcome = answer ? outcomeOf(answer->end) : TextOutcome::toolMissing;
        return none;
    }

private:
    Result<std::vector<std::byte>> ask(const PluginRequest& request, const CancelFlag& cancel)
    {
        auto answer = pool_.ask(encodePluginRequest(request), WorkerInput{}, cancel);
        if (!answer)
            return answer.error();
        if (answer->end != WorkerEnd::answered)
            return endError(*answer);
        return std::move(answer->message);
    }

    WorkerPool pool_;
};

}  // namespace

std::unique_ptr<PluginAccess> makeWorkerPlugins(WorkerProcesses& processes, WorkerLimits limits, unsigned most)
{
    return std::make_unique<WorkerPlugins>(processes, limits, most);
}

}  // namespace kelvane
