#include "engine/similar_documents.h"

#include <limits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "engine/classified_ahead.h"
#include "engine/document_description.h"
#include "engine/document_filter.h"
#include "engine/document_neighbours.h"
#include "props/sim_doc_cache.h"

namespace kelvane {
namespace {

ContentMeasure measureOf(const Ref<const SimDocDescriptor>& descriptor)
{
    return descriptor ? ContentMeasure{descriptor->size(), descriptor->length()} : ContentMeasure{};
}

class SimilarDocuments final : public SimilarContent {
public:
    SimilarDocuments(const SimilarDocumentsPorts& ports, ProbeNumbers numbers, unsigned threads)
        : shell_(ports.shell),
          property_(ports.properties.catalogue().stock(StockProperty::simDocDescriptor)),
          describer_(ports.shell, ports.extraction, ports.cache),
          numbers_(numbers),
          pairNumber_(numbers == ProbeNumbers::perPair ? nextRandom() : 0),
          threads_(workerCount(threads))
    {
    }

    bool supports(Category category) const override { return category == Category::documents; }

    bool mayAdmit(const ScanCriteria&, const ItemContext& file) const override
    {
        return !describer_.hopeless(file.item());
    }

    std::optional<NoDescriptorCause> describe(const ScanCriteria& criteria, Candidate& file,
                                              const CancelFlag& cancel) override
    {
        std::optional<NoDescriptorCause> cause;
        static_cast<void>(documentDescriptor(file, property_, [&](const ShellItem& item) {
            DocumentDescription made = describer_.describe(item, criteria.options.sizesOnDisk, cancel);
            if (!made.descriptor)
                cause = made.cause();
            return std::move(made.descriptor);
        }));
        return cause;
    }

    // By the sizes that descriptors go by, where "sizes too different to be scored" ends the inner walk.
    std::optional<std::vector<std::uint64_t>> order(const ScanCriteria&, CandidateList& candidates,
                                                    const CancelFlag& cancel) override
    {
        std::vector<std::uint64_t> keys;
        keys.reserve(candidates.size());
        for (Candidate& file : candidates) {
            if (cancel.cancelled())
                return std::nullopt;
            const Ref<const SimDocDescriptor> held = documentDescriptor(file, property_, {});
            keys.push_back(held ? held->size() : std::numeric_limits<std::uint64_t>::max());
        }
        return keys;
    }

    bool admits(const ScanCriteria&, ItemContext& file) override
    {
        return static_cast<bool>(documentDescriptor(file, property_, {}));
    }

    ContentScore compare(const ScanCriteria& criteria, ItemContext& a, ItemContext& b,
                         const CancelFlag& cancel) override
    {
        const auto first = descriptorOf(criteria, a, cancel);
        const auto second = descriptorOf(criteria, b, cancel);
        ContentScore result{.a = measureOf(first), .b = measureOf(second)};
        result.comparable = first && second && !sizesTooDifferent(first->size(), second->size());
        result.endsWalk = first && second && !result.comparable;
        if (result.comparable)
            result.score = score(criteria, *first, *second);
        else if (result.endsWalk)
            result.score = document_score::sizesTooDifferent;
        return result;
    }

    std::unique_ptr<Neighbours> narrow(const ScanCriteria& criteria, const SortedCandidates& sorted,
                                       const CancelFlag& cancel) override
    {
        // Where properties are compared first, few pairs are left to be scored.
        if (numbers_ != ProbeNumbers::perPair || !criteria.properties.empty())
            return nullptr;
        OrderedDocuments documents;
        documents.descriptors.reserve(sorted.size());
        for (std::uint32_t i = 0; i < sorted.size(); ++i)
            documents.descriptors.push_back(descriptorOf(criteria, sorted.at(i), cancel));
        if (criteria.has(scan_flag::sameType))
            documents.types = typesOf(sorted);
        DocumentNeighbours::PairFilter filter;
        if (!criteria.options.exhaustive)
            filter = makeDocumentFilter(documents, criteria.similarity, threads_, cancel);
        const DocumentPairs pairs(pairNumber_, criteria.similarity);
        return std::make_unique<DocumentNeighbours>(std::move(documents), pairs, std::move(filter), threads_, cancel);
    }

private:
    Ref<const SimDocDescriptor> descriptorOf(const ScanCriteria& criteria, ItemContext& file,
                                             const CancelFlag& cancel) const
    {
        return documentDescriptor(file, property_, [&](const ShellItem& item) {
            return describer_.describe(item, criteria.options.sizesOnDisk, cancel).descriptor;
        });
    }

    std::int32_t score(const ScanCriteria& criteria, const SimDocDescriptor& a, const SimDocDescriptor& b) const
    {
        if (numbers_ == ProbeNumbers::perPair) {
            const auto match = DocumentPairs(pairNumber_, criteria.similarity).match(a, b);
            return match.value_or(document_score::clearlyDifferent);
        }
        SharedRandom random;
        return compareDocuments(a, b, random);
    }

    // A number for each different type.
    std::vector<std::uint32_t> typesOf(const SortedCandidates& sorted) const
    {
        std::unordered_map<std::u16string, std::uint32_t> known;
        std::vector<std::uint32_t> types;
        types.reserve(sorted.size());
        for (std::uint32_t i = 0; i < sorted.size(); ++i) {
            const auto next = static_cast<std::uint32_t>(known.size());
            types.push_back(known.try_emplace(shell_.itemType(sorted.at(i).item()), next).first->second);
        }
        return types;
    }

    ShellNamespace& shell_;
    const PropRef property_;
    const DocumentDescriber describer_;
    const ProbeNumbers numbers_;
    const std::uint32_t pairNumber_;
    const unsigned threads_;
};

}  // namespace

std::unique_ptr<SimilarContent> makeSimilarDocuments(const SimilarDocumentsPorts& ports, ProbeNumbers numbers,
                                                     unsigned threads)
{
    return std::make_unique<SimilarDocuments>(ports, numbers, threads);
}

}  // namespace kelvane
