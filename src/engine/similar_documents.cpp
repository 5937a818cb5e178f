#include "engine/similar_documents.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "engine/background_work.h"
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
          threads_(workerCount(threads)),
          work_(threads_)
    {
    }
    ~SimilarDocuments() override { abandon(); }

    bool supports(Category category) const override { return category == Category::documents; }

    bool mayAdmit(const ScanCriteria&, const ItemContext& file) const override
    {
        return !describer_.hopeless(file.item());
    }

    void announce(const ScanCriteria& criteria, Candidate& file) override
    {
        const std::uint64_t number = announced_++;
        work_.add([this, number, &file, sizeOnDisk = criteria.options.sizesOnDisk] {
            DocumentDescription made = describer_.describe(file.item(), sizeOnDisk, stop_);
            if (!made.descriptor)
                failed({number, file.itemRef(), made.cause()});
            keepDocumentDescriptor(file, property_, std::move(made.descriptor));
        });
    }

    bool settle(const CancelFlag& cancel, const std::function<void(std::uint64_t done)>& whileWaiting,
                const NoDescriptor& none) override
    {
        if (!work_.settle(cancel, whileWaiting)) {
            abandon();
            return false;
        }
        tellFailures(none);
        return true;
    }

    void abandon() noexcept override
    {
        stop_.cancel();
        work_.drop();
        stop_.reset();
        failures_.clear();
        announced_ = 0;
    }

    bool admits(const ScanCriteria& criteria, ItemContext& file) override
    {
        return static_cast<bool>(descriptorOf(criteria, file));
    }

    ContentScore compare(const ScanCriteria& criteria, ItemContext& a, ItemContext& b) override
    {
        const auto first = descriptorOf(criteria, a);
        const auto second = descriptorOf(criteria, b);
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
            documents.descriptors.push_back(descriptorOf(criteria, sorted.at(i)));
        if (criteria.has(scan_flag::sameType))
            documents.types = typesOf(sorted);
        DocumentNeighbours::PairFilter filter;
        if (!criteria.options.exhaustive)
            filter = makeDocumentFilter(documents, criteria.similarity, threads_, cancel);
        const DocumentPairs pairs(pairNumber_, criteria.similarity);
        return std::make_unique<DocumentNeighbours>(std::move(documents), pairs, std::move(filter), threads_, cancel);
    }

private:
    struct Failure {
        std::uint64_t number;
        Ref<const ShellItem> item;
        NoDescriptorCause cause;
    };

    Ref<const SimDocDescriptor> descriptorOf(const ScanCriteria& criteria, ItemContext& file) const
    {
        return documentDescriptor(file, property_, [&](const ShellItem& item) {
            return describer_.describe(item, criteria.options.sizesOnDisk, stop_).descriptor;
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

    void failed(Failure failure)
    {
        const std::lock_guard lock(failuresMutex_);
        failures_.push_back(std::move(failure));
    }

    void tellFailures(const NoDescriptor& none)
    {
        std::sort(failures_.begin(), failures_.end(),
                  [](const Failure& a, const Failure& b) { return a.number < b.number; });
        for (const Failure& failure : failures_)
            none(*failure.item, failure.cause);
        failures_.clear();
        announced_ = 0;
    }

    ShellNamespace& shell_;
    const PropRef property_;
    const DocumentDescriber describer_;
    const ProbeNumbers numbers_;
    const std::uint32_t pairNumber_;
    const unsigned threads_;
    CancelFlag stop_;
    std::uint64_t announced_ = 0;
    std::mutex failuresMutex_;
    std::vector<Failure> failures_;  // guarded while there is work
    BackgroundWork work_;            // last: its threads use everything above
};

}  // namespace

std::unique_ptr<SimilarContent> makeSimilarDocuments(const SimilarDocumentsPorts& ports, ProbeNumbers numbers,
                                                     unsigned threads)
{
    return std::make_unique<SimilarDocuments>(ports, numbers, threads);
}

}  // namespace kelvane
