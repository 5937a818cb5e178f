// The rows of the table of well-known properties: their shapes, the sets that several subjects share, and the subjects.
#pragma once

#include <span>

#include "platform/format_id.h"
#include "platform/property_system.h"

namespace kelvane {

// Property sets, by their published format identifiers.
namespace property_set {
inline constexpr FormatId summary = formatId("{F29F85E0-4FF9-1068-AB91-08002B27B3D9}");
inline constexpr FormatId documentSummary = formatId("{D5CDD502-2E9C-101B-9397-08002B2CF9AE}");
inline constexpr FormatId storage = formatId("{B725F130-47EF-101A-A5F1-02608C9EEBAC}");
inline constexpr FormatId shellDetails = formatId("{28636AA6-953D-11D2-B5D6-00C04FD918D0}");
inline constexpr FormatId message = formatId("{E3E0584C-B788-4A5A-BB20-7F5A44C9ACDD}");
inline constexpr FormatId version = formatId("{0CEF7D53-FA64-11D1-A203-0000F81FEDEE}");
inline constexpr FormatId music = formatId("{56A3372E-CE9C-11D2-9F0E-006097C686F6}");
inline constexpr FormatId image = formatId("{6444048F-4C8B-11D1-8B70-080036B11A03}");
inline constexpr FormatId audio = formatId("{64440490-4C8B-11D1-8B70-080036B11A03}");
inline constexpr FormatId video = formatId("{64440491-4C8B-11D1-8B70-080036B11A03}");
inline constexpr FormatId media = formatId("{64440492-4C8B-11D1-8B70-080036B11A03}");
inline constexpr FormatId exif = formatId("{14B81DA1-0135-4D31-96D9-6CBFC9671A99}");
}  // namespace property_set

// The number of a property that has a set to itself.
inline constexpr std::uint32_t onlyMember = 100;

constexpr PropertyInfo propertyRow(std::string_view name, PropertyKey key, VarType type,
                                   std::u16string_view displayName, std::uint16_t flags = 0)
{
    PropertyInfo row;
    row.name = name;
    row.key = key;
    row.type = type;
    row.flags = flags;
    row.displayName = displayName;
    return row;
}

constexpr PropertyInfo textRow(std::string_view name, PropertyKey key, std::u16string_view displayName)
{
    return propertyRow(name, key, VarType::wideText, displayName);
}

// Several texts, such as the authors of a document.
constexpr PropertyInfo textsRow(std::string_view name, PropertyKey key, std::u16string_view displayName)
{
    PropertyInfo row = textRow(name, key, displayName);
    row.multiple = true;
    return row;
}

constexpr PropertyInfo dateRow(std::string_view name, PropertyKey key, std::u16string_view displayName)
{
    return propertyRow(name, key, VarType::fileTime, displayName);
}

constexpr PropertyInfo realRow(std::string_view name, PropertyKey key, std::u16string_view displayName)
{
    return propertyRow(name, key, VarType::float64, displayName);
}

constexpr PropertyInfo truthRow(std::string_view name, PropertyKey key, std::u16string_view displayName)
{
    return propertyRow(name, key, VarType::boolean, displayName);
}

// An amount of something: a number that can be calculated with.
constexpr PropertyInfo amountRow(std::string_view name, PropertyKey key, VarType type, std::u16string_view displayName)
{
    return propertyRow(name, key, type, displayName, property_flag::numeric);
}

// A number out of a fixed list of meanings.
constexpr PropertyInfo choiceRow(std::string_view name, PropertyKey key, VarType type, std::u16string_view displayName)
{
    PropertyInfo row = propertyRow(name, key, type, displayName);
    row.enumerated = true;
    return row;
}

// Degrees, minutes and seconds.
constexpr PropertyInfo angleRow(std::string_view name, PropertyKey key, std::u16string_view displayName)
{
    PropertyInfo row = propertyRow(name, key, VarType::float64, displayName, property_flag::sexagesimal);
    row.multiple = true;
    return row;
}

// A row that the file's record serves.
constexpr PropertyInfo ofRecord(PropertyInfo row)
{
    row.flags |= property_flag::fromFileRecord;
    return row;
}

// The subjects, in catalogue order.
[[nodiscard]] std::span<const PropertyInfo> fileRows() noexcept;
[[nodiscard]] std::span<const PropertyInfo> documentRows() noexcept;
[[nodiscard]] std::span<const PropertyInfo> musicRows() noexcept;
[[nodiscard]] std::span<const PropertyInfo> videoRows() noexcept;
[[nodiscard]] std::span<const PropertyInfo> pictureRows() noexcept;
[[nodiscard]] std::span<const PropertyInfo> gpsRows() noexcept;
[[nodiscard]] std::span<const PropertyInfo> messageRows() noexcept;

}  // namespace kelvane
