// Documents whose texts are alike, whatever their formats.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/similar_content.h"
#include "platform/run_cache.h"
#include "platform/shell_namespace.h"
#include "props/property_source.h"
#include "text/text_extraction.h"

namespace kelvane {

// How the numbers for the probes are drawn.
enum class ProbeNumbers : std::uint8_t {
    shared,   // from the program's generator, one comparison after the other: two files held against each other
    perPair,  // from a generator of each pair's own, seeded from one number of the shared one and both texts, so that
              // the order in which pairs come, and how many threads compare, make no difference
};

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
