#include "engine/media_causes.h"

#include "base/filled_text.h"
#include "media/described_media.h"

namespace kelvane {
namespace {

TextId wordsFor(MediaOutcome outcome)
{
    switch (outcome) {
    case MediaOutcome::made:
        return TextId::mediaNothingMade;
    case MediaOutcome::unknownFormat:
        return TextId::mediaUnknownFormat;
    case MediaOutcome::nothingThere:
        return TextId::mediaNothingThere;
    case MediaOutcome::tooShort:
        return TextId::mediaTooShort;
    case MediaOutcome::lowRate:
        return TextId::mediaLowRate;
    case MediaOutcome::featureless:
        return TextId::mediaFeatureless;
    case MediaOutcome::tooLarge:
        return TextId::mediaTooLarge;
    case MediaOutcome::encrypted:
        return TextId::textEncrypted;
    case MediaOutcome::damaged:
        return TextId::textDamaged;
    case MediaOutcome::codecMissing:
        return TextId::mediaCodecMissing;
    case MediaOutcome::workerMissing:
        return TextId::mediaWorkerMissing;
    case MediaOutcome::timedOut:
        return TextId::textTimedOut;
    case MediaOutcome::tooMuchMemory:
        return TextId::textTooMuchMemory;
    case MediaOutcome::crashed:
        return TextId::textReaderCrashed;
    case MediaOutcome::unreadable:
    case MediaOutcome::cancelled:
        break;
    }
    return TextId::textUnreadable;
}

}  // namespace

NoDescriptorCause mediaCause(const MediaFault& fault)
{
    std::string detail = fault.outcome == MediaOutcome::codecMissing ? fault.codec : fault.detail;
    return {filledText(wordsFor(fault.outcome)), std::move(detail), fault.outcome == MediaOutcome::unreadable,
            !isLasting(fault.outcome)};
}

}  // namespace kelvane
