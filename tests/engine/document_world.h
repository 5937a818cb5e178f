// A small world with documents in it: files in memory, texts from a table, made-up words.
#pragma once

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "base/random.h"
#include "engine/grouping_world.h"
#include "engine/similar_documents.h"
#include "support/fake_extraction.h"
#include "support/memory_run_cache.h"

namespace kelvane::testing {

// A text of made-up words, the same for the same seed.
inline std::u16string madeUpText(unsigned seed, std::size_t length)
{
    std::mt19937 random(seed);
    const auto below = [&](unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(random); };
    std::u16string text;
    while (text.size() < length) {
        for (unsigned letters = 2 + below(8); letters > 0; --letters)
            text += static_cast<char16_t>(u'a' + below(below(2) == 0 ? 26 : 6));
        text += u' ';
    }
    text.resize(length);
    return text;
}

struct DocumentWorld : GroupingWorld {
    FakeExtraction extraction;
    MemoryRunCaches caches;
    std::unique_ptr<RunCache> cache;
    std::unique_ptr<SimilarContent> documents;

    // Anew, as a new run of the program would.
    void begin(ProbeNumbers numbers = ProbeNumbers::perPair)
    {
        seedRandom(7);
        documents = makeSimilarDocuments({properties, *shell, extraction, cache.get()}, numbers, options.threads);
        similar = documents.get();
    }
    void addPlain(const std::string& path, const std::u16string& text)
    {
        files.addFile(path, std::string(text.size(), 'x'));
        extraction.setPlain(path, text);
    }
    [[nodiscard]] ScanCriteria alike(std::int32_t similarity, std::uint32_t flags = 0, const char* names = "") const
    {
        ScanCriteria by = criteria(exactContents | scan_flag::fuzzy | flags, names, Category::documents);
        by.similarity = similarity;
        by.masks = FileMasks();
        return by;
    }
    [[nodiscard]] Candidate file(const std::string& path) { return Candidate(*shell->parse(native(path))); }
};

}  // namespace kelvane::testing
