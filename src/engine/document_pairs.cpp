#include "engine/document_pairs.h"

namespace kelvane {
namespace {

// Steele, Lea and Flood's SplitMix64 (OOPSLA 2014): every bit of the input moves every bit of the output.
std::uint64_t mixed(std::uint64_t x)
{
    x += 0x9E3779B97F4A7C15u;
    x = (x ^ x >> 30) * 0xBF58476D1CE4E5B9u;
    x = (x ^ x >> 27) * 0x94D049BB133111EBu;
    return x ^ x >> 31;
}

}  // namespace

std::optional<std::int32_t> DocumentPairs::match(const SimDocDescriptor& a, const SimDocDescriptor& b) const
{
    MinimalStandard random(mixed(mixed(mixed(number_) + a.textDigest()) + b.textDigest()));
    return similarDocuments(a, b, similarity_, random);
}

}  // namespace kelvane
