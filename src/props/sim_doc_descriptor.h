// What makes two documents alike: statistics of their characters, and their texts for random probes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/random.h"
#include "base/ref.h"
#include "platform/raw_value.h"

namespace kelvane {

// Immutable once made; any number of threads may read it.
class SimDocDescriptor final : public RawObject {
public:
    static constexpr std::size_t leastLength = 1536;  // characters; shorter texts have no descriptor

    // Nothing for a text that is too short. size: that of the document, in bytes.
    [[nodiscard]] static Ref<SimDocDescriptor> make(std::u16string text, std::uint64_t size);

    // Mean and deviation of the characters / 255 and / 400, mean and deviation of the pairs of neighbours (low bytes)
    // / 25000 and / 12000.
    [[nodiscard]] const std::array<double, 4>& statistics() const { return statistics_; }
    [[nodiscard]] std::uint32_t length() const { return static_cast<std::uint32_t>(text_.size()); }
    [[nodiscard]] std::u16string_view text() const { return text_; }
    [[nodiscard]] std::uint64_t size() const { return size_; }
    // The same for equal texts; tells pairs apart when their probes are drawn.
    [[nodiscard]] std::uint32_t textDigest() const { return digest_; }

    // As bytes for a cache, compact; nothing for bytes that are not whole.
    [[nodiscard]] std::vector<std::byte> packed() const;
    [[nodiscard]] static Ref<SimDocDescriptor> unpacked(std::span<const std::byte> bytes);

private:
    SimDocDescriptor(std::u16string text, std::uint64_t size);

    std::array<double, 4> statistics_{};
    std::u16string text_;
    std::uint64_t size_ = 0;
    std::uint32_t digest_ = 0;
};

namespace document_score {
inline constexpr std::int32_t sizesTooDifferent = -12345;
inline constexpr std::int32_t clearlyDifferent = -1;
}  // namespace document_score

// Whether two sizes are more than 15 % apart (of their mean): such documents are never compared. Two empty ones are
// not.
[[nodiscard]] bool sizesTooDifferent(std::uint64_t a, std::uint64_t b);

// The score, on the percentage scale but not clamped: 697 for equal texts of equal sizes. A linear model over 17
// features: differences of the statistics and of the sizes, and the gestalt match of twelve random runs of 256
// characters at corresponding places; then once more with the roles exchanged. Draws 12 or 24 numbers.
[[nodiscard]] std::int32_t compareDocuments(const SimDocDescriptor& a, const SimDocDescriptor& b,
                                            RandomNumbers& random);

// Whether compareDocuments() would give at least `similarity`, with the score where it does: the same answer from the
// same numbers, but stops as soon as it cannot change any more (so how many numbers were drawn is not told).
[[nodiscard]] std::optional<std::int32_t> similarDocuments(const SimDocDescriptor& a, const SimDocDescriptor& b,
                                                           std::int32_t similarity, RandomNumbers& random);

}  // namespace kelvane
