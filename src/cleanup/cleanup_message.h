// What a person is told when a clean-up is over.
#pragma once

#include <cstdint>
#include <string>

#include "base/size_text.h"
#include "results/results_model.h"

namespace kelvane {

// The part of the marked bytes that goes with so many of the marked items: an estimate, since sizes differ.
[[nodiscard]] std::uint64_t reclaimedBytes(MarkSum marked, std::uint64_t removed);

// Empty when nothing was removed.
[[nodiscard]] std::u16string cleanupMessage(MarkSum marked, std::uint64_t removed, bool recycled,
                                            const SizeWords& size = sizeText);

}  // namespace kelvane
