#include "cleanup/cleanup_fault.h"

#include "base/filled_text.h"

namespace kelvane {
namespace {

struct FaultRow {
    CleanupFault fault;
    std::string_view name;
    TextId reason;
};

constexpr FaultRow faultRows[] = {
    {CleanupFault::system, "system", TextId::faultSystemCode},
    {CleanupFault::changed, "changed", TextId::faultChanged},
    {CleanupFault::keptChanged, "keptChanged", TextId::faultKeptChanged},
    {CleanupFault::sameFile, "sameFile", TextId::faultSameFile},
    {CleanupFault::keptInTrash, "keptInTrash", TextId::faultKeptInTrash},
    {CleanupFault::keptMarked, "keptMarked", TextId::faultKeptMarked},
    {CleanupFault::different, "different", TextId::faultDifferent},
    {CleanupFault::isLink, "isLink", TextId::faultIsLink},
    {CleanupFault::beingWritten, "beingWritten", TextId::faultBeingWritten},
    {CleanupFault::volumeRefuses, "volumeRefuses", TextId::faultVolumeRefuses},
    {CleanupFault::noTrash, "noTrash", TextId::skippedNoTrash},
    {CleanupFault::placeTaken, "placeTaken", TextId::faultPlaceTaken},
    {CleanupFault::gone, "gone", TextId::faultGone},
    {CleanupFault::forGood, "forGood", TextId::faultForGood},
    {CleanupFault::journal, "journal", TextId::faultJournal},
};

const FaultRow& rowOf(CleanupFault fault)
{
    return faultRows[static_cast<std::size_t>(fault)];
}

constexpr bool rowsFollowTheirFaults()
{
    for (std::size_t at = 0; at < std::size(faultRows); ++at) {
        if (static_cast<std::size_t>(faultRows[at].fault) != at)
            return false;
    }
    return true;
}
static_assert(rowsFollowTheirFaults());

std::string ofSystem(const Error& error)
{
    return error.detail.empty() ? filledText(TextId::faultSystemCode, {std::to_string(error.systemCode)})
                                : error.detail;
}

}  // namespace

std::string_view nameOf(CleanupFault fault)
{
    return rowOf(fault).name;
}

std::string textOf(const CleanupFailure& failure)
{
    if (failure.fault == CleanupFault::system)
        return ofSystem(failure.error);
    const std::string reason = filledText(rowOf(failure.fault).reason);
    return failure.error.detail.empty() ? reason : reason + ": " + failure.error.detail;
}

}  // namespace kelvane
