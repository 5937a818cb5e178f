#include "app/property_access.h"

#include "base/filled_text.h"
#include "media/media_readers.h"
#include "media/media_service.h"
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

MediaOptions mediaOptions(const EngineOptions& options)
{
    MediaOptions media = options.media;
    media.largestEntry = options.largestVirtualStream.bytes;
    return media;
}

}  // namespace

PropertyAccess::PropertyAccess(Platform& platform, const EngineOptions& options, DescriptorCache* kept,
                               const CancelFlag* cancel)
    : cache(kept),
      plugins(std::make_unique<PluginSupport>(platform, options.extraction)),
      extraction(makeTextExtraction({platform.shell(), platform.workers(), platform.decoding(), platform.xml(),
                                     platform.packages(), platform.filters(), plugins->texts()},
                                    options.extraction)),
      media(makeMediaReading(platform.shell(), platform.workers(), mediaOptions(options))),
      describer(std::make_unique<MediaDescriber>(platform.shell(), *media, cache)),
      documents(makeDocumentReaders(*extraction, platform.readers(), cancel)),
      readers(makeMediaReaders(*describer, *documents, cancel)),
      catalogue(plugins->properties()),
      source(catalogue, platform.shell(), plugins->readers(*readers), platform.folding(), kindMasks(options))
{
}

std::vector<std::string> PropertyAccess::takeComplaints() const
{
    std::vector<std::string> lines = plugins->takeComplaints();
    for (const std::string& tool : extraction->missingTools())
        lines.push_back(filledText(TextId::toolNotInstalled, {tool}));
    for (const std::string& name : media->missing()) {
        const bool isProgram = name.starts_with("kelvane-");
        lines.push_back(filledText(isProgram ? TextId::mediaProgramMissing : TextId::toolNotInstalled, {name}));
    }
    for (const std::string& warning : {extraction->warning(), media->warning()})
        if (!warning.empty())
            lines.push_back(warning);
    const std::string problem = cache != nullptr ? cache->problem() : std::string();
    if (!problem.empty())
        lines.push_back(problem);
    return lines;
}

}  // namespace kelvane
