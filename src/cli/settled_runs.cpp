#include "cli/settled_runs.h"

#include "app/cleanup_tools.h"
#include "cleanup/settled_text.h"

namespace kelvane {

void settleRuns(Platform& platform, const Console& console)
{
    CleanupTools tools(platform);
    const auto runs = settleUnfinished(tools.journals(), tools.ports());
    if (!runs)
        return complain(console, textOf({CleanupFault::journal, runs.error()}));
    for (const SettledRun& run : *runs)
        for (const std::string& line : settledLines(run))
            complain(console, line);
}

}  // namespace kelvane
