// What a file's record tells of the file: no look at the disk, no memory.
#pragma once

#include <cstdint>
#include <optional>

#include "props/prop_cache.h"
#include "props/property_catalogue.h"

namespace kelvane {

// A whole number or a file time under its variant type; an empty type says that this file has no value.
struct RecordNumber {
    VarType type = VarType::empty;
    std::uint64_t bits = 0;

    // As values are compared; the missing mark when there is none.
    [[nodiscard]] std::uint64_t comparable() const noexcept;
    [[nodiscard]] RawValue raw() const { return RawValue::number(type, bits); }
};

// Nothing for a property that the record does not hold. The group number is part of the record: it changes with the
// file's context, so it must not be kept anywhere else.
[[nodiscard]] std::optional<RecordNumber> recordNumber(const ItemContext& file, const PropRef& property) noexcept;

}  // namespace kelvane
