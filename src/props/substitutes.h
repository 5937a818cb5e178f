// Properties that, where no reader gives them, are taken from another property of the same file.
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "props/property_catalogue.h"

namespace kelvane {

// Immutable and thread-safe; the catalogue is only asked at construction.
class Substitutes {
public:
    explicit Substitutes(const PropertyCatalogue& catalogue);

    // In order of preference; empty for most properties. No property leads back to itself.
    [[nodiscard]] std::span<const PropRef> of(const PropRef& property) const;

private:
    std::vector<std::pair<std::uint32_t, std::vector<PropRef>>> lists_;
};

}  // namespace kelvane
