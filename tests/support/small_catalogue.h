// A handful of the system's properties with their published keys, for tests that need names and no reader.
#pragma once

#include <array>

#include "platform/property_system.h"

namespace kelvane::testing {

class SmallPropertySystem final : public PropertySystem {
public:
    const PropertyInfo* byName(std::string_view canonicalName) const override
    {
        for (const auto& row : rows)
            if (row.name == canonicalName)
                return &row;
        return nullptr;
    }
    std::span<const PropertyInfo> all() const override { return rows; }

private:
    static constexpr FormatId storage{0xB725F130, 0x47EF, 0x101A, {0xA5, 0xF1, 0x02, 0x60, 0x8C, 0x9E, 0xEB, 0xAC}};
    static constexpr FormatId shell{0x28636AA6, 0x953D, 0x11D2, {0xB5, 0xD6, 0x00, 0xC0, 0x4F, 0xD9, 0x18, 0xD0}};
    static constexpr FormatId summary{0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};
    static constexpr FormatId media{0x64440490, 0x4C8B, 0x11D1, {0x8B, 0x70, 0x08, 0x00, 0x36, 0xB1, 0x1A, 0x03}};
    static constexpr FormatId music{0x56A3372E, 0xCE9C, 0x11D2, {0x9F, 0x0E, 0x00, 0x60, 0x97, 0xC6, 0x86, 0xF6}};
    static constexpr FormatId message{0xE3E0584C, 0xB788, 0x4A5A, {0xBB, 0x20, 0x7F, 0x5A, 0x44, 0xC9, 0xAC, 0xDD}};
    static constexpr auto fromRecord = property_flag::fromFileRecord;

    static constexpr std::array<PropertyInfo, 10> rows{{
        {"System.ItemTypeText", {storage, 4}, VarType::wideText, fromRecord, u"Type", u""},
        {"System.Size", {storage, 12}, VarType::uint64, fromRecord, u"Size", u""},
        {"System.DateModified", {storage, 14}, VarType::fileTime, fromRecord, u"Date modified", u""},
        {"System.ItemType", {shell, 11}, VarType::wideText, fromRecord, u"Item type", u""},
        {"System.ItemFolderPathDisplay", {message, 6}, VarType::wideText, fromRecord, u"Folder path", u""},
        {"System.ItemPathDisplay", {message, 7}, VarType::wideText, fromRecord, u"Path", u""},
        {"System.Title", {summary, 2}, VarType::wideText, 0, u"Title", u""},
        {"System.Media.Duration", {media, 3}, VarType::uint64, 0, u"Length", u""},
        {"System.Media.Year", {music, 5}, VarType::uint32, 0, u"Year", u""},
        {"System.ThumbnailStream", {summary, 27}, VarType::blob, 0, u"Thumbnail stream", u""},
    }};
};

}  // namespace kelvane::testing
