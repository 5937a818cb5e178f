#include "cli/property_access.h"

#include "base/text_table.h"
#include "text/document_readers.h"
#include "text/extraction_service.h"

namespace kelvane {
namespace {

// The kind of a file is a value that programs read too, so the built-in names of kinds stay as they are in every
// language.
std::u16string untranslated(const std::u16string& name)
{
    for (const auto id : {TextId::categoryMusic, TextId::categoryMovies, TextId::categoryDocuments,
                          TextId::categoryPhotos, TextId::categoryEbooks, TextId::categoryAll, TextId::categoryFolders})
        if (name == text(id))
            return std::u16string(englishText(id));
    return name;
}

KindMasks kindMasks(const EngineOptions& options)
{
    KindMasks kinds;
    for (const FileCategory& category : options.categories)
        kinds.emplace_back(untranslated(category.name), category.masks);
    return kinds;
}

}  // namespace

PropertyAccess::PropertyAccess(Platform& platform, const EngineOptions& options)
    : plugins(std::make_unique<PluginSupport>(platform, options.extraction)),
      extraction(makeTextExtraction({platform.shell(), platform.workers(), platform.decoding(), platform.xml(),
                                     platform.packages(), platform.filters(), plugins->texts()},
                                    options.extraction)),
      readers(makeDocumentReaders(*extraction, platform.readers())),
      catalogue(plugins->properties()),
      source(catalogue, platform.shell(), plugins->readers(*readers), platform.folding(), kindMasks(options))
{
}

}  // namespace kelvane
