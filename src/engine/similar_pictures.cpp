#include "engine/similar_pictures.h"

#include <memory>
#include <utility>
#include <vector>

#include "engine/alike_previews.h"
#include "engine/classified_ahead.h"
#include "engine/media_causes.h"
#include "engine/picture_neighbours.h"
#include "engine/picture_pairs.h"
#include "engine/picture_scores.h"
#include "engine/preview_order.h"
#include "props/held_object.h"

namespace kelvane {
namespace {

MediaKind kindOf(const ScanCriteria& criteria)
{
    return criteria.category() == Category::video ? MediaKind::film : MediaKind::picture;
}

class SimilarPictures final : public SimilarContent {
public:
    SimilarPictures(const PropertySource& properties, MediaDescriber& describer, ProbeNumbers numbers, unsigned threads)
        : describer_(describer),
          thumbnail_(properties.catalogue().stock(StockProperty::thumbnail)),
          numbers_(numbers),
          threads_(workerCount(threads)),
          scores_(describer, numbers)
    {
    }

    bool supports(Category category) const override
    {
        return category == Category::images || category == Category::video;
    }

    bool mayAdmit(const ScanCriteria&, const ItemContext& file) const override
    {
        return !describer_.reading().hopeless(file.item());
    }

    std::optional<NoDescriptorCause> describe(const ScanCriteria& criteria, Candidate& file,
                                              const CancelFlag& cancel) override
    {
        if (wasMade(file, thumbnail_))
            return std::nullopt;
        PreviewDescription made = describer_.signature(file.item(), kindOf(criteria), cancel);
        if (made.fault.outcome == MediaOutcome::cancelled)
            return mediaCause(made.fault);  // nothing is known: it can be asked for again
        if (!made.signature) {
            keepObject(file, thumbnail_, {});
            return mediaCause(made.fault);
        }
        const Ref<DescribedPreview> described(new DescribedPreview(*made.signature));
        if (made.preview)
            scores_.keep(described, std::move(made.preview));
        keepObject(file, thumbnail_, described);
        return std::nullopt;
    }

    // Films stand in the order of their durations.
    std::optional<std::vector<std::uint64_t>> order(const ScanCriteria& criteria, CandidateList& candidates,
                                                    const CancelFlag& cancel) override
    {
        if (!isOrderedByLooks(criteria))
            return std::nullopt;
        arranged_.reset();
        OrderedPictures pictures;
        for (const Candidate& file : candidates)
            pictures.push_back({held<DescribedPreview>(file, thumbnail_), file.itemRef()});
        auto alikes = AlikePreviews::find(signaturesOf(pictures), threads_, cancel);
        const auto places = alikes ? placesByLooks(*alikes, cancel) : std::nullopt;
        if (!places)
            return std::nullopt;
        arranged_.emplace(Arranged{&candidates, std::move(pictures), *std::move(alikes)});
        return std::vector<std::uint64_t>(places->begin(), places->end());
    }

    bool admits(const ScanCriteria&, ItemContext& file) override
    {
        return static_cast<bool>(held<DescribedPreview>(file, thumbnail_));
    }

    ContentScore compare(const ScanCriteria& criteria, ItemContext& a, ItemContext& b,
                         const CancelFlag& cancel) override
    {
        const auto first = describedOf(criteria, a, cancel), second = describedOf(criteria, b, cancel);
        ContentScore result;
        result.comparable = first && second;
        if (!result.comparable)
            return result;
        result.look = kelvane::secondLook(first->signature(), second->signature());
        result.vetoed = criteria.options.secondLook && !result.look->agrees;
        if (!first->sameSize(*second)) {
            result.endsWalk = isOrderedByLooks(criteria);
            return result;
        }
        if (result.vetoed && numbers_ == ProbeNumbers::perPair)
            return result;
        const auto scored = scores_.of({first, a.itemRef()}, {second, b.itemRef()}, kindOf(criteria), cancel);
        result.comparable = scored.has_value();
        result.score = scored.value_or(0);
        return result;
    }

    std::unique_ptr<Neighbours> narrow(const ScanCriteria& criteria, const SortedCandidates& sorted,
                                       const CancelFlag& cancel) override
    {
        if (numbers_ != ProbeNumbers::perPair)
            return nullptr;
        const auto pictures = ordered(criteria, sorted, cancel);
        PicturePairs pairs;
        // Without the second look nothing tells from signatures which pairs the score parts: all of a size are scored.
        if (criteria.options.secondLook && !criteria.options.exhaustive)
            pairs.later = alikesAmong(*pictures, sorted, cancel);
        else
            pairs.later = laterOfSameSize(pictures, criteria.options.secondLook, cancel);
        if (!pairs.later)
            return nullptr;
        pairs.score = [this, pictures, kind = kindOf(criteria), &cancel](std::uint32_t a, std::uint32_t b) {
            return scores_.of((*pictures)[a], (*pictures)[b], kind, cancel);
        };
        // Where properties are compared first, few pairs are left to be scored.
        return std::make_unique<PictureNeighbours>(sorted, std::move(pairs), criteria.similarity,
                                                   criteria.properties.empty(), threads_, cancel);
    }

private:
    // What order() found out, for narrow().
    struct Arranged {
        const CandidateList* list;
        OrderedPictures pictures;  // by the numbers of the list; the index refers to their signatures
        AlikePreviews alikes;
    };

    // Empty when cancelled.
    [[nodiscard]] LaterPicture alikesAmong(const OrderedPictures& pictures, const SortedCandidates& sorted,
                                           const CancelFlag& cancel)
    {
        const auto known = std::exchange(arranged_, std::nullopt);
        const auto isSame = [&](std::uint32_t i) {
            return sorted.order[i] < known->pictures.size() &&
                   known->pictures[sorted.order[i]].described == pictures[i].described;
        };
        bool same = known && known->list == sorted.list;
        for (std::uint32_t i = 0; same && i < sorted.size(); ++i)
            same = isSame(i);
        return same ? laterAlikes(pictures, known->alikes, sorted.order, cancel)
                    : laterAlikes(pictures, threads_, cancel);
    }

    // By position.
    [[nodiscard]] std::shared_ptr<const OrderedPictures>
    ordered(const ScanCriteria& criteria, const SortedCandidates& sorted, const CancelFlag& cancel)
    {
        auto pictures = std::make_shared<OrderedPictures>();
        pictures->reserve(sorted.size());
        for (std::uint32_t i = 0; i < sorted.size(); ++i)
            pictures->push_back({describedOf(criteria, sorted.at(i), cancel), sorted.at(i).itemRef()});
        return pictures;
    }

    [[nodiscard]] bool isOrderedByLooks(const ScanCriteria& criteria) const
    {
        return criteria.category() == Category::images && criteria.primary == thumbnail_;
    }

    [[nodiscard]] Ref<const DescribedPreview> describedOf(const ScanCriteria& criteria, ItemContext& file,
                                                          const CancelFlag& cancel)
    {
        static_cast<void>(describe(criteria, file, cancel));
        return held<DescribedPreview>(file, thumbnail_);
    }

    const MediaDescriber& describer_;
    const PropRef thumbnail_;
    const ProbeNumbers numbers_;
    const unsigned threads_;
    PictureScores scores_;
    std::optional<Arranged> arranged_;
};

}  // namespace

std::unique_ptr<SimilarContent> makeSimilarPictures(const PropertySource& properties, MediaDescriber& describer,
                                                    ProbeNumbers numbers, unsigned threads)
{
    return std::make_unique<SimilarPictures>(properties, describer, numbers, threads);
}

}  // namespace kelvane
