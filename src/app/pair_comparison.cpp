#include "app/pair_comparison.h"

#include "base/filled_text.h"
#include "engine/same_file.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// Says why a file has nothing that could be compared.
void describeBoth(const ScanCriteria& criteria, std::array<Candidate, 2>& pair, SimilarContent& similar,
                  const CancelFlag& cancel, std::vector<std::string>& complaints)
{
    if (!isDescribed(criteria, &similar))
        return;
    for (Candidate& file : pair) {
        const auto cause = similar.describe(criteria, file, cancel);
        if (cancel.cancelled())
            return;
        if (cause)
            complaints.push_back(
                filledText(TextId::noDescriptor, {bytesFromNative(file.item().fullName()), causeText(*cause)}));
    }
}

}  // namespace

PairComparison comparePair(std::array<Candidate, 2>& pair, const ScanCriteria& criteria, const PropertySource& source,
                           SimilarContent& similar, Platform& platform, const CancelFlag& cancel)
{
    auto& [a, b] = pair;
    PairComparison comparison;
    comparison.sameFile = sameFile(a.item(), b.item(), platform.paths());
    describeBoth(criteria, pair, similar, cancel, comparison.complaints);
    if (cancel.cancelled()) {
        comparison.result.stage = -1;
        return comparison;
    }
    ContentComparer contents(platform.shell(), criteria.options, cancel);
    Matcher matcher(criteria, source, platform.shell(), contents, &similar);
    matcher.reportTo(&comparison.stages);
    comparison.result = matcher.compare(a, b, std::nullopt);
    return comparison;
}

}  // namespace kelvane
