#include "app/cleanup_tools.h"

#include "cleanup/criteria_text.h"

namespace kelvane {

CleanupTools::CleanupTools(Platform& platform, SymbolicLinkService* elevated)
    : platform_(platform),
      elevated_(elevated),
      disk_(platform.files(), platform.heldFiles()),
      journals_(platform.files(), platform.output(), journalFolder(platform.places().stateFolder()))
{
}

CleanupContext CleanupTools::context(ResultsModel& results, const CScanNode& definition, const EngineOptions& options,
                                     CleanupMemory& memory, CleanupQuestions& questions, PassObserver* watcher)
{
    return {results,
            definition,
            disk_.facts(definition, platform_.paths()),
            ports(),
            platform_.output(),
            platform_.places(),
            journals_,
            memory,
            questions,
            watcher,
            criteriaText(definition, options, platform_.paths(), platform_.shell())};
}

PassPorts CleanupTools::ports() const
{
    return {platform_.heldFiles(),
            platform_.fileOperations(),
            platform_.files(),
            platform_.paths(),
            platform_.clock(),
            elevated_,
            elevated_ != nullptr && platform_.processes().isElevated(),
            &platform_.output()};
}

}  // namespace kelvane
