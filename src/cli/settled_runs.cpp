#include "cli/settled_runs.h"

#include "base/filled_text.h"
#include "cleanup/settle.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

std::string pathText(const std::filesystem::path& path)
{
    return bytesFromNative(path.native());
}

void tellUnsettled(const std::string& number, const Unsettled& item, const Console& console)
{
    const std::string reason = textOf(item.failure);
    complain(console, item.left.empty() ? filledText(TextId::unsettledItem, {number, pathText(item.item), reason})
                                        : filledText(TextId::unsettledBeside,
                                                     {number, pathText(item.item), reason, pathText(item.left)}));
}

void tell(const SettledRun& run, const Console& console)
{
    const std::string number = std::to_string(static_cast<std::uint32_t>(run.number));
    if (run.completed + run.takenBack > 0)
        complain(console, filledText(TextId::settledRun,
                                     {number, std::to_string(run.completed), std::to_string(run.takenBack)}));
    for (const Unsettled& item : run.unsettled)
        tellUnsettled(number, item, console);
    if (run.damaged)
        complain(console, filledText(TextId::settledDamaged, {number}));
}

}  // namespace

PassPorts passPorts(Platform& platform)
{
    return {platform.heldFiles(),
            platform.fileOperations(),
            platform.files(),
            platform.paths(),
            platform.clock(),
            nullptr,
            false,
            &platform.output()};
}

void settleRuns(Platform& platform, const Console& console)
{
    Journals journals(platform.files(), platform.output(), journalFolder(platform.places().stateFolder()));
    const auto runs = settleUnfinished(journals, passPorts(platform));
    if (!runs)
        return complain(console, textOf({CleanupFault::journal, runs.error()}));
    for (const SettledRun& run : *runs)
        tell(run, console);
}

}  // namespace kelvane
