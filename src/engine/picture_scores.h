// Scores of pictures and films, from previews in memory or fetched again.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/pair_numbers.h"
#include "engine/picture_pairs.h"
#include "media/described_media.h"

namespace kelvane {

// Thread-safe.
class PictureScores {
public:
    // What previews in memory may take; about 2,200 of the usual size. Others are taken out of the cache between runs,
    // or made again, about in the order in which they are compared.
    static constexpr std::uint64_t mostBytes = 256u * 1'048'576u;

    PictureScores(const MediaDescriber& describer, ProbeNumbers numbers, std::uint64_t bytes = mostBytes);

    // Lets a preview stay in memory.
    void keep(Ref<const DescribedPreview> described, Ref<CachedBitmap> preview);

    // Both are described. Nothing where a preview cannot be had any more, and when cancelled.
    [[nodiscard]] std::optional<std::int32_t> of(const Picture& a, const Picture& b, MediaKind kind,
                                                 const CancelFlag& cancel);

private:
    [[nodiscard]] Ref<CachedBitmap> preview(const Picture& picture, MediaKind kind, const CancelFlag& cancel);

    const MediaDescriber& describer_;
    const ProbeNumbers numbers_;
    const std::uint32_t pairNumber_;
    RecentPreviews recent_;
};

}  // namespace kelvane
