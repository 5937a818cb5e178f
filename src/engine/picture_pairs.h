// Which pairs of a search's pictures have to be scored.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "base/cancel.h"
#include "engine/described_preview.h"
#include "platform/shell_item.h"

namespace kelvane {

class AlikePreviews;

struct Picture {
    Ref<const DescribedPreview> described;  // null: there is none
    Ref<const ShellItem> item;
};

// By position.
using OrderedPictures = std::vector<Picture>;

// Null where there is none.
[[nodiscard]] std::vector<const PreviewSignature*> signaturesOf(const OrderedPictures& pictures);

// The nearest position behind `after` that nothing but the score may part from the reference, or Neighbours::none.
// Thread-safe; holds the pictures.
using LaterPicture = std::function<std::uint32_t(std::uint32_t reference, std::uint32_t after)>;

// Those that a second look agrees on, found by an index: all of them where they are not many, else the most alike ones
// and the next in line. Empty when cancelled.
[[nodiscard]] LaterPicture laterAlikes(const OrderedPictures& pictures, unsigned threads, const CancelFlag& cancel);
// The same from what was found before, where the pictures have these numbers, by position.
[[nodiscard]] LaterPicture laterAlikes(const OrderedPictures& pictures, const AlikePreviews& alikes,
                                       std::span<const std::uint32_t> numbers, const CancelFlag& cancel);

// All of the same size, or those of them that a second look agrees on. Ends early when cancelled; the flag outlives it.
[[nodiscard]] LaterPicture laterOfSameSize(std::shared_ptr<const OrderedPictures> pictures, bool secondLook,
                                           const CancelFlag& cancel);

}  // namespace kelvane
