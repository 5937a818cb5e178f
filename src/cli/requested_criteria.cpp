#include "cli/requested_criteria.h"

#include "app/checked_criteria.h"
#include "base/filled_text.h"

namespace kelvane {
namespace {

bool namesAreKnown(const CScanNode& definition, const PropertyCatalogue& catalogue)
{
    std::vector<std::string> unknown;
    const auto known = catalogue.parseList(definition.properties, &unknown);
    return unknown.empty();
}

}  // namespace

Result<ScanCriteria> requestedCriteria(const ScanRequest& request, const PropertyCatalogue& catalogue,
                                       const SimilarContent& similar)
{
    auto criteria = checkedCriteria(request.definition, request.options, catalogue, similar);
    if (criteria)
        return criteria;
    Error error = criteria.error();
    if (!namesAreKnown(request.definition, catalogue))
        error.detail += filledText(TextId::listPrintsNames);
    return error;
}

}  // namespace kelvane
