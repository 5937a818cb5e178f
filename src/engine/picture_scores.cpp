#include "engine/picture_scores.h"

#include <utility>

#include "base/random.h"
#include "engine/mixed_bits.h"
#include "props/preview_score.h"

namespace kelvane {

PictureScores::PictureScores(const MediaDescriber& describer, ProbeNumbers numbers, std::uint64_t bytes)
    : describer_(describer),
      numbers_(numbers),
      pairNumber_(numbers == ProbeNumbers::perPair ? nextRandom() : 0),
      recent_(bytes)
{
}

void PictureScores::keep(Ref<const DescribedPreview> described, Ref<CachedBitmap> preview)
{
    recent_.put(std::move(described), std::move(preview));
}

std::optional<std::int32_t> PictureScores::of(const Picture& a, const Picture& b, MediaKind kind,
                                              const CancelFlag& cancel)
{
    const Ref<CachedBitmap> first = preview(a, kind, cancel), second = preview(b, kind, cancel);
    if (!first || !second)
        return std::nullopt;
    if (numbers_ == ProbeNumbers::perPair) {
        MinimalStandard random(pairSeed(pairNumber_, a.described->digest(), b.described->digest()));
        return comparePreviews(*first, *second, random);
    }
    SharedRandom random;
    return comparePreviews(*first, *second, random);
}

Ref<CachedBitmap> PictureScores::preview(const Picture& picture, MediaKind kind, const CancelFlag& cancel)
{
    return recent_.obtain(picture.described, [&] { return describer_.preview(*picture.item, kind, cancel); });
}

}  // namespace kelvane
