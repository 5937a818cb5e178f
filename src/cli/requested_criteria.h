// From a request to the criteria that the engine works by.
#pragma once

#include "cli/options.h"
#include "engine/criteria.h"
#include "engine/similar_content.h"

namespace kelvane {

// An error with a message for the person: an unknown property (with the nearest names and where the list is), nothing
// to compare, or similar contents of a category that nothing can describe yet. The catalogue must outlive the criteria.
[[nodiscard]] Result<ScanCriteria> requestedCriteria(const ScanRequest& request, const PropertyCatalogue& catalogue,
                                                     const SimilarContent& similar);

}  // namespace kelvane
