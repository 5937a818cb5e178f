#include "engine/document_pairs.h"

#include "engine/mixed_bits.h"

namespace kelvane {

std::optional<std::int32_t> DocumentPairs::match(const SimDocDescriptor& a, const SimDocDescriptor& b) const
{
    MinimalStandard random(pairSeed(number_, a.textDigest(), b.textDigest()));
    return similarDocuments(a, b, similarity_, random);
}

}  // namespace kelvane
