// Ports: the catalogue of the system's properties, and the readers of their values by file type.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "platform/property_key.h"
#include "platform/raw_value.h"
#include "platform/shell_item.h"

namespace kelvane {

// Flags in the upper 16 bits of a type word (as values before the shift).
namespace property_flag {
inline constexpr std::uint16_t numeric = 0x0008;      // sets 0x80 in the cache node
inline constexpr std::uint16_t stock = 0x0040;        // one of the program's own rows
inline constexpr std::uint16_t sexagesimal = 0x0100;  // a vector is degrees, minutes, seconds
inline constexpr std::uint16_t fromFileRecord =
    0x0400;                                        // known from the file's record: the file is never opened for it
inline constexpr std::uint16_t combined = 0x1000;  // a word list made from other properties
}  // namespace property_flag

// One row of a catalogue; lives as long as the program.
struct PropertyInfo {
    std::string_view name;  // canonical, "System.Music.AlbumTitle"
    PropertyKey key;
    VarType type = VarType::empty;
    std::uint16_t flags = 0;
    std::u16string_view displayName;
    std::u16string_view description;  // empty where the display name says it all
    bool enumerated = false;          // values come from a fixed list
    bool multiple = false;            // a vector of values

    [[nodiscard]] constexpr std::uint32_t typeWord() const
    {
        return static_cast<std::uint32_t>(flags) << 16 | static_cast<std::uint32_t>(type);
    }
};

// The system's well-known properties. Thread-safe and constant.
class PropertySystem {
public:
    virtual ~PropertySystem() = default;
    // Exact and case-sensitive; null when there is none.
    [[nodiscard]] virtual const PropertyInfo* byName(std::string_view canonicalName) const = 0;
    // Every row, in catalogue order.
    [[nodiscard]] virtual std::span<const PropertyInfo> all() const = 0;
};

// Reads values that only a look into the file can tell (tags, dimensions, ...). Thread-safe.
class PropertyReaders {
public:
    virtual ~PropertyReaders() = default;
    // An empty value when the file has no such property, cannot be read, or no reader knows its type.
    [[nodiscard]] virtual RawValue read(const PropertyInfo& property, const ShellItem& item) = 0;
};

}  // namespace kelvane
