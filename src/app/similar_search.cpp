#include "app/similar_search.h"

#include "engine/similar_documents.h"
#include "engine/similar_music.h"
#include "engine/similar_pictures.h"

namespace kelvane {

SimilarSearch::SimilarSearch(const PropertyAccess& properties, ProbeNumbers numbers, unsigned threads,
                             Platform& platform)
{
    const SimilarDocumentsPorts documents{properties.source, platform.shell(), *properties.extraction,
                                          properties.cache};
    each_.push_back(makeSimilarDocuments(documents, numbers, threads));
    each_.push_back(makeSimilarMusic(properties.source, *properties.describer, threads));
    each_.push_back(makeSimilarPictures(properties.source, *properties.describer, numbers, threads));
    std::vector<SimilarContent*> contents;
    for (const auto& content : each_)
        contents.push_back(content.get());
    all_ = combined(std::move(contents));
}

}  // namespace kelvane
