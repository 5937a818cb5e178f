// The quick look at pairs of documents that leaves most of them uncompared.
#pragma once

#include "engine/document_neighbours.h"

namespace kelvane {

// Below this similarity the look promises nothing, and every pair is compared.
inline constexpr std::int32_t leastFilteredSimilarity = 80;

// Empty (no filter) for a lower similarity, and when cancelled. Made by so many threads, 1 KiB a document.
[[nodiscard]] DocumentNeighbours::PairFilter makeDocumentFilter(const OrderedDocuments& documents,
                                                                std::int32_t similarity, unsigned threads,
                                                                const CancelFlag& cancel);

}  // namespace kelvane
