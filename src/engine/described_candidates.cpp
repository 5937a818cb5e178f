#include "engine/described_candidates.h"

#include "base/text_table.h"
#include "engine/matcher.h"
#include "engine/progress_pacer.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

void count(const ShellItem& item, const NoDescriptorCause& cause, ScanObserver& observer, WalkStats& stats)
{
    SkippedItem told{bytesFromNative(item.fullName()), {ErrorKind::notSupported, 0, causeText(cause)}};
    if (cause.unreadable) {
        ++stats.skipped;
        observer.skipped(told);
        return;
    }
    ++stats.undescribed[cause.reason];
    stats.undescribedFailed = stats.undescribedFailed || cause.passing;
    observer.undescribed(told);
}

}  // namespace

bool settleDescriptors(const ScanCriteria& criteria, CandidateList& candidates, const DescriptorPorts& ports,
                       WalkStats& stats)
{
    if (!isDescribed(criteria, ports.similar))
        return true;
    ports.observer.caption(text(TextId::phaseTexts));
    ProgressPacer pacer(ports.clock, ports.observer);
    const auto report = [&](std::uint64_t done) {
        if (pacer.due())
            pacer.report({ScanPhase::describing, done, candidates.size(), 0, 0});
    };
    const bool settled =
        ports.similar->settle(ports.cancel, report, [&](const ShellItem& item, const NoDescriptorCause& cause) {
            count(item, cause, ports.observer, stats);
        });
    if (!settled)
        return false;
    pacer.report({ScanPhase::describing, candidates.size(), candidates.size(), 0, 0});
    std::erase_if(candidates,
                  [&](Candidate& file) { return ports.properties.value(file, criteria.primary).missing(); });
    return true;
}

}  // namespace kelvane
