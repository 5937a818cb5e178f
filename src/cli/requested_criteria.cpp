#include "cli/requested_criteria.h"

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

Result<ScanCriteria> requestedCriteria(const ScanRequest& request, const PropertyCatalogue& catalogue)
{
    auto criteria = makeCriteria(request.definition, request.options, catalogue);
    if (!criteria) {
        Error error = criteria.error();
        if (!namesAreKnown(request.definition, catalogue))
            error.detail += "; 'kelvane-cli describe --list' prints all names";
        return error;
    }
    if (auto able = checkDescriptors(*criteria, nullptr); !able)
        return able.error();
    return criteria;
}

}  // namespace kelvane
