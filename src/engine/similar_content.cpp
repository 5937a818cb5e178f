#include "engine/similar_content.h"

#include <algorithm>
#include <utility>

#include "engine/neighbours.h"

namespace kelvane {
namespace {

// What is asked of a category that nobody supports says that nothing is there to compare.
class CombinedContents final : public SimilarContent {
public:
    explicit CombinedContents(std::vector<SimilarContent*> contents) : contents_(std::move(contents)) {}

    bool supports(Category category) const override { return of(category) != nullptr; }

    bool mayAdmit(const ScanCriteria& criteria, const ItemContext& file) const override
    {
        const SimilarContent* content = of(criteria.category());
        return content != nullptr && content->mayAdmit(criteria, file);
    }

    std::optional<NoDescriptorCause> describe(const ScanCriteria& criteria, Candidate& file,
                                              const CancelFlag& cancel) override
    {
        SimilarContent* content = of(criteria.category());
        return content != nullptr ? content->describe(criteria, file, cancel) : NoDescriptorCause{};
    }

    std::optional<std::vector<std::uint64_t>> order(const ScanCriteria& criteria, CandidateList& candidates,
                                                    const CancelFlag& cancel) override
    {
        SimilarContent* content = of(criteria.category());
        return content != nullptr ? content->order(criteria, candidates, cancel) : std::nullopt;
    }

    bool admits(const ScanCriteria& criteria, ItemContext& file) override
    {
        SimilarContent* content = of(criteria.category());
        return content != nullptr && content->admits(criteria, file);
    }

    ContentScore compare(const ScanCriteria& criteria, ItemContext& a, ItemContext& b,
                         const CancelFlag& cancel) override
    {
        SimilarContent* content = of(criteria.category());
        return content != nullptr ? content->compare(criteria, a, b, cancel) : ContentScore{.comparable = false};
    }

    std::unique_ptr<Neighbours> narrow(const ScanCriteria& criteria, const SortedCandidates& sorted,
                                       const CancelFlag& cancel) override
    {
        SimilarContent* content = of(criteria.category());
        return content != nullptr ? content->narrow(criteria, sorted, cancel) : nullptr;
    }

private:
    [[nodiscard]] SimilarContent* of(Category category) const
    {
        const auto supports = [category](const SimilarContent* content) { return content->supports(category); };
        const auto found = std::find_if(contents_.begin(), contents_.end(), supports);
        return found != contents_.end() ? *found : nullptr;
    }

    const std::vector<SimilarContent*> contents_;
};

}  // namespace

std::string causeText(const NoDescriptorCause& cause)
{
    return cause.detail.empty() ? cause.reason : cause.reason + " (" + cause.detail + ')';
}

bool SimilarContent::mayAdmit(const ScanCriteria&, const ItemContext&) const
{
    return true;
}

std::optional<std::vector<std::uint64_t>> SimilarContent::order(const ScanCriteria&, CandidateList&, const CancelFlag&)
{
    return std::nullopt;
}

std::unique_ptr<Neighbours> SimilarContent::narrow(const ScanCriteria&, const SortedCandidates&, const CancelFlag&)
{
    return nullptr;
}

std::unique_ptr<SimilarContent> combined(std::vector<SimilarContent*> contents)
{
    return std::make_unique<CombinedContents>(std::move(contents));
}

}  // namespace kelvane
