// Documents whose texts are alike, whatever their formats.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/pair_numbers.h"
#include "engine/similar_content.h"
#include "platform/run_cache.h"
#include "platform/shell_namespace.h"
#include "props/property_source.h"
#include "text/text_extraction.h"

namespace kelvane {

struct SimilarDocumentsPorts {
    const PropertySource& properties;
    ShellNamespace& shell;
    TextExtraction& extraction;
    RunCache* cache = nullptr;  // where descriptors are kept from run to run; may be null
};

// Supports Category::documents. The ports outlive it.
[[nodiscard]] std::unique_ptr<SimilarContent> makeSimilarDocuments(const SimilarDocumentsPorts& ports,
                                                                   ProbeNumbers numbers, unsigned threads);

}  // namespace kelvane
