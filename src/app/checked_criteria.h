// A scan definition, checked before a scan begins.
#pragma once

#include "engine/criteria.h"
#include "engine/similar_content.h"

namespace kelvane {

// An error with a message for the person: an unknown property (with the nearest names), nothing to compare, a malformed
// size range, or similar contents of a category that nothing can describe. The catalogue must outlive the criteria.
[[nodiscard]] Result<ScanCriteria> checkedCriteria(const CScanNode& definition, const EngineOptions& options,
                                                   const PropertyCatalogue& catalogue, const SimilarContent& similar);

}  // namespace kelvane
