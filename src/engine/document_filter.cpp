#include "engine/document_filter.h"

#include <memory>

#include "props/sim_doc_signature.h"

namespace kelvane {
namespace {

// By position; nothing where there is no descriptor.
using Signatures = std::vector<std::unique_ptr<const SimDocSignature>>;

// False when cancelled.
bool sign(const OrderedDocuments& documents, unsigned threads, const CancelFlag& cancel, Signatures& signatures)
{
    signatures.resize(documents.descriptors.size());
    OrderedTasks tasks(signatures.size(), threads, [&]() -> OrderedTasks::Task {
        return [&](std::size_t position) {
            if (documents.descriptors[position])
                signatures[position] = std::make_unique<const SimDocSignature>(*documents.descriptors[position]);
        };
    });
    for (std::size_t position = 0; position < signatures.size(); ++position) {
        if (!tasks.await(position, cancel, [] {}))
            return false;
    }
    return true;
}

}  // namespace

DocumentNeighbours::PairFilter makeDocumentFilter(const OrderedDocuments& documents, std::int32_t similarity,
                                                  unsigned threads, const CancelFlag& cancel)
{
    if (similarity < leastFilteredSimilarity)
        return {};
    const auto signatures = std::make_shared<Signatures>();
    if (!sign(documents, threads, cancel, *signatures))
        return {};
    return [signatures, similarity](std::uint32_t a, std::uint32_t b) {
        const Signatures& all = *signatures;
        return all[a] && all[b] && SimDocSignature::mayReach(*all[a], *all[b], similarity);
    };
}

}  // namespace kelvane
