// What the control words of RTF mean to one who wants its text.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/raw_value.h"

namespace kelvane {

enum class RtfAction : std::uint8_t {
    none,       // formatting
    skip,       // the group is no text of the document
    follow,     // the group is text even where it is marked as one to be skipped
    character,  // stands for `character`
    lineBreak,
    gap,
    codePage,  // of the document: `codePage`
    documentCodePage,
    font,
    defaultFont,
    plain,
    hidden,
    unicode,
    unicodeSkip,
    binary,
    fontTable,
    fontCharset,
    fontCodePage,
    alternatives,  // a group in bytes, and the same one in Unicode
    unicodeAlternative,
    info,
    infoText,
    infoDate,
    infoNumber,
    datePart,
};

struct RtfWord {
    std::string_view name;
    RtfAction action = RtfAction::none;
    std::uint16_t value = 0;         // the character or the code page
    std::string_view property = {};  // of the info group
    bool list = false;               // several values, parted by ';' or ','
    VarType type = VarType::empty;   // of a number
};

// A row with the action `none` for a word that is not known.
[[nodiscard]] const RtfWord& rtfWord(std::string_view name);

}  // namespace kelvane
