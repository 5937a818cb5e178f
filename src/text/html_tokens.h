// HTML and XML, cut into tags and text without ever refusing anything.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

struct HtmlToken {
    enum class Kind { text, begin, end };
    Kind kind = Kind::text;
    std::u16string_view text;        // of text: as written, character references and all
    bool verbatim = false;           // of text: a CDATA section, where nothing is a reference
    std::string name;                // of a tag, A to Z in lower case; cut after some length
    std::u16string_view attributes;  // of a begin tag, as written
    bool closed = false;             // of a begin tag: "<br/>"
};

// Goes through a document once, in linear time. Comments, declarations and processing instructions are left out. What
// never ends (a tag, a quotation) is cut short so that as little as possible is lost.
class HtmlTokens {
public:
    explicit HtmlTokens(std::u16string_view document) : rest_(document) {}

    [[nodiscard]] std::optional<HtmlToken> next();
    // Everything up to the end tag of this name, whatever markup it looks like. Where there is no such tag: nothing, or
    // all the rest.
    enum class Unended { isNothing, isRest };
    [[nodiscard]] std::u16string_view rawText(std::string_view name, Unended unended);

private:
    [[nodiscard]] bool skipDeclaration();
    [[nodiscard]] HtmlToken text();
    [[nodiscard]] HtmlToken cdata();
    [[nodiscard]] std::optional<HtmlToken> tag();
    [[nodiscard]] std::size_t tagEnd(std::size_t from);
    [[nodiscard]] std::size_t quotationEnd(std::size_t from);

    std::u16string_view rest_;
    // What was looked for in vain up to the document's end is not looked for again.
    bool noDoubleQuote_ = false, noSingleQuote_ = false;
    std::vector<std::string> neverEnded_;
};

// The value of an attribute, references resolved; nothing where it is not there. The name in lower case.
[[nodiscard]] std::optional<std::u16string> htmlAttribute(std::u16string_view attributes, std::string_view name);

// With character references resolved.
[[nodiscard]] std::u16string withoutReferences(std::u16string_view text);

// Appends a character outside of the basic plane as two units.
void appendCharacter(std::u16string& text, char32_t character);

}  // namespace kelvane
