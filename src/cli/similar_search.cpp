#include "cli/similar_search.h"

#include "app/descriptor_cache.h"
#include "base/filled_text.h"

namespace kelvane {
namespace {

bool describesDocuments(const CScanNode& definition)
{
    return definition.has(scan_flag::fuzzy) && definition.has(scan_flag::contents) &&
           definition.category() == Category::documents;
}

}  // namespace

SimilarSearch::SimilarSearch(const ScanRequest& request, const Settings& settings, const PropertyAccess& properties,
                             ProbeNumbers numbers, Platform& platform, const Console& console)
{
    if (request.useCache && describesDocuments(request.definition)) {
        OpenedRunCache opened = openRunCache(settings, platform.runCaches());
        if (!opened.problem.empty())
            complain(console, opened.problem);
        cache_ = std::move(opened.cache);
    }
    content_ = makeSimilarDocuments({properties.source, platform.shell(), *properties.extraction, cache_.get()},
                                    numbers, request.options.threads);
}

SimilarSearch::~SimilarSearch()
{
    content_.reset();
    if (cache_)
        cache_->flush();
}

void complainOfMissingTools(const TextExtraction& extraction, const Console& console)
{
    for (const std::string& tool : extraction.missingTools())
        complain(console, filledText(TextId::toolNotInstalled, {tool}));
}

}  // namespace kelvane
