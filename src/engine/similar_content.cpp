#include "engine/similar_content.h"

#include "engine/neighbours.h"

namespace kelvane {

std::string causeText(const NoDescriptorCause& cause)
{
    return cause.detail.empty() ? cause.reason : cause.reason + " (" + cause.detail + ')';
}

bool SimilarContent::mayAdmit(const ScanCriteria&, const ItemContext&) const
{
    return true;
}

void SimilarContent::announce(const ScanCriteria&, Candidate&) {}

bool SimilarContent::settle(const CancelFlag& cancel, const std::function<void(std::uint64_t done)>&,
                            const NoDescriptor&)
{
    return !cancel.cancelled();
}

void SimilarContent::abandon() noexcept {}

std::unique_ptr<Neighbours> SimilarContent::narrow(const ScanCriteria&, const SortedCandidates&, const CancelFlag&)
{
    return nullptr;
}

}  // namespace kelvane
