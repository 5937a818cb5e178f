#include "cli/requested_criteria.h"

#include "base/filled_text.h"
#include "engine/matcher.h"

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
    // Asked first, since without a descriptor there may be nothing else to compare either.
    ScanCriteria asked;
    asked.definition = request.definition;
    asked.options = request.options;
    if (auto able = checkDescriptors(asked, &similar); !able)
        return able.error();
    auto criteria = makeCriteria(request.definition, request.options, catalogue);
    if (criteria || namesAreKnown(request.definition, catalogue))
        return criteria;
    Error error = criteria.error();
    error.detail += filledText(TextId::listPrintsNames);
    return error;
}

}  // namespace kelvane
