// Rich Text Format, cut into groups, control words and bytes of text (Rich Text Format Specification 1.9.1, "RTF
// Syntax").
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

struct RtfToken {
    enum class Kind {
        begin,   // of a group
        end,     // of a group
        word,    // a control word: name, and number where it has one
        symbol,  // a control symbol: `byte`
        hex,     // one byte of text written as \'hh: `byte`
        bytes,   // text as it is; line ends are no part of it
    };
    Kind kind = Kind::bytes;
    std::string_view text;  // of a word its name, of bytes they
    bool hasNumber = false;
    int number = 0;
    char byte = 0;

    [[nodiscard]] int numberOr(int otherwise) const { return hasNumber ? number : otherwise; }
};

// Goes through the document once. Views are into the document.
class RtfTokens {
public:
    explicit RtfTokens(std::string_view document) : rest_(document) {}

    [[nodiscard]] std::optional<RtfToken> next();
    // Leaves out so many bytes, or the rest: binary data in the text.
    void skip(std::size_t count);

private:
    [[nodiscard]] RtfToken control();
    [[nodiscard]] RtfToken word();
    [[nodiscard]] RtfToken hex();
    [[nodiscard]] RtfToken bytes();

    std::string_view rest_;
};

}  // namespace kelvane
