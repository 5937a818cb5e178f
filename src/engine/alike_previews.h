// Which previews of many may be one picture.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "base/cancel.h"
#include "engine/preview_index.h"

namespace kelvane {

// The previews of a search, by numbers, each with those most alike to it.
class AlikePreviews {
public:
    // As many are found ahead for each; where more are alike, the nearest.
    static constexpr std::size_t most = 32;

    // Null signatures are alike to nothing; the others outlive it. Nothing when cancelled.
    [[nodiscard]] static std::optional<AlikePreviews> find(std::span<const PreviewSignature* const> signatures,
                                                           unsigned threads, const CancelFlag& cancel);

    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(alikes_.size()); }
    // Nearest first.
    [[nodiscard]] std::span<const AlikePreview> of(std::uint32_t number) const { return alikes_[number]; }
    // The nearest of all that are wanted; found ahead or not.
    [[nodiscard]] std::optional<AlikePreview> nearest(std::uint32_t number,
                                                      const std::function<bool(std::uint32_t)>& wanted) const;
    // Those of each size; null ones are in none.
    using Group = std::vector<std::uint32_t>;
    [[nodiscard]] const std::vector<Group>& groups() const { return groups_; }

private:
    explicit AlikePreviews(std::size_t count) : alikes_(count), places_(count) {}

    struct Place {
        std::uint32_t group = 0, number = 0;  // in its index
    };

    // False when cancelled.
    [[nodiscard]] bool findWithin(std::uint32_t group, unsigned threads, const CancelFlag& cancel);

    std::vector<std::vector<AlikePreview>> alikes_;
    std::vector<Place> places_;
    std::vector<Group> groups_;
    std::vector<PreviewIndex> indexes_;  // of the groups
};

}  // namespace kelvane
