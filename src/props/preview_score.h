// How alike two previews are.
#pragma once

#include <cstdint>

#include "base/random.h"
#include "props/cached_bitmap.h"

namespace kelvane {

// On the percentage scale, not clamped: equal pictures with much in them reach far beyond 100, unrelated ones lie below
// 0. A linear model over the deviations of colours and of their differences in four random blocks, repeated up to five
// times and stopped early where the outcome is clear. 0 for previews of different sizes and for tiny ones. Flat
// pictures are all alike to it, whatever their colours: see PreviewGate.
[[nodiscard]] std::int32_t comparePreviews(const CachedBitmap& a, const CachedBitmap& b, RandomNumbers& random);

}  // namespace kelvane
