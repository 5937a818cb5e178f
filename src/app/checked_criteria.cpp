#include "app/checked_criteria.h"

#include "engine/matcher.h"

namespace kelvane {

Result<ScanCriteria> checkedCriteria(const CScanNode& definition, const EngineOptions& options,
                                     const PropertyCatalogue& catalogue, const SimilarContent& similar)
{
    // Asked first, since without a descriptor there may be nothing else to compare either.
    ScanCriteria asked;
    asked.definition = definition;
    asked.options = options;
    if (auto able = checkDescriptors(asked, &similar); !able)
        return able.error();
    return makeCriteria(definition, options, catalogue);
}

}  // namespace kelvane
