#include "text/html_tokens.h"

#include <algorithm>

#include "text/collapsed_text.h"
#include "text/html_entities.h"

namespace kelvane {
namespace {

constexpr std::size_t longestTag = 40;

constexpr bool endsName(char16_t unit)
{
    return isMarkupSpace(unit) || unit == u'/' || unit == u'>';
}

// As bytes, for the names that matter are ASCII; what is not becomes '?'.
char lowered(char16_t unit)
{
    if (unit >= u'A' && unit <= u'Z')
        unit |= 0x20;
    return unit < 0x80 ? static_cast<char>(unit) : '?';
}

std::string nameOf(std::u16string_view written)
{
    std::string name;
    for (const char16_t unit : written.substr(0, longestTag))
        name += lowered(unit);
    return name;
}

// A '<' that is more than a character.
bool beginsMarkup(std::u16string_view text)
{
    if (text.size() < 2 || text[0] != u'<')
        return false;
    return isMarkupLetter(text[1]) || text[1] == u'!' || text[1] == u'?' || (text[1] == u'/' && text.size() > 2);
}

// The text behind the first of these words; what there is none of ends with the document.
std::u16string_view behind(std::u16string_view text, std::u16string_view word)
{
    const std::size_t at = text.find(word);
    return at == std::u16string_view::npos ? std::u16string_view() : text.substr(at + word.size());
}

std::size_t skipSpaces(std::u16string_view text, std::size_t at)
{
    while (at < text.size() && isMarkupSpace(text[at]))
        ++at;
    return at;
}

bool namedAt(std::u16string_view text, std::string_view name)
{
    if (text.size() <= name.size() || !endsName(text[name.size()]))
        return false;
    return std::equal(name.begin(), name.end(), text.begin(),
                      [](char wanted, char16_t unit) { return wanted == lowered(unit); });
}

// One attribute at a time; quotation marks may be missing.
class Attributes {
public:
    explicit Attributes(std::u16string_view written) : rest_(written) {}

    bool next()
    {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(u" \n\t\r\f/"), rest_.size()));
        if (rest_.empty())
            return false;
        const std::size_t end = std::min(rest_.find_first_of(u" \n\t\r\f/=", 1), rest_.size());
        name = rest_.substr(0, end);
        rest_.remove_prefix(skipSpaces(rest_, end));
        value = {};
        if (rest_.starts_with(u'='))
            takeValue();
        return true;
    }

    std::u16string_view name, value;

private:
    void takeValue()
    {
        rest_.remove_prefix(skipSpaces(rest_, 1));
        const bool quoted = rest_.starts_with(u'"') || rest_.starts_with(u'\'');
        const std::u16string_view ends = quoted ? rest_.substr(0, 1) : u" \n\t\r\f";
        rest_.remove_prefix(quoted ? 1 : 0);
        const std::size_t end = std::min(rest_.find_first_of(ends), rest_.size());
        value = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + (quoted ? 1 : 0), rest_.size()));
    }

    std::u16string_view rest_;
};

}  // namespace

std::optional<HtmlToken> HtmlTokens::next()
{
    while (!rest_.empty()) {
        if (!beginsMarkup(rest_))
            return text();
        if (rest_.starts_with(u"<![CDATA["))
            return cdata();
        if (skipDeclaration())
            continue;
        if (auto token = tag())
            return token;
    }
    return std::nullopt;
}

// "</" and something that is no name counts as a comment, as in browsers.
bool HtmlTokens::skipDeclaration()
{
    if (isMarkupLetter(rest_[1]) || (rest_[1] == u'/' && isMarkupLetter(rest_[2])))
        return false;
    if (rest_.starts_with(u"<!-->"))
        rest_.remove_prefix(5);
    else
        rest_ = rest_.starts_with(u"<!--") ? behind(rest_.substr(4), u"-->") : behind(rest_, u">");
    return true;
}

HtmlToken HtmlTokens::text()
{
    std::size_t end = 1;
    while (end < rest_.size() && !beginsMarkup(rest_.substr(end)))
        end = std::min(rest_.find(u'<', end + 1), rest_.size());
    HtmlToken token;
    token.text = rest_.substr(0, end);
    rest_.remove_prefix(end);
    return token;
}

HtmlToken HtmlTokens::cdata()
{
    constexpr std::u16string_view beginning = u"<![CDATA[", ending = u"]]>";
    rest_.remove_prefix(beginning.size());
    const std::size_t end = std::min(rest_.find(ending), rest_.size());
    HtmlToken token;
    token.text = rest_.substr(0, end);
    token.verbatim = true;
    rest_.remove_prefix(std::min(end + ending.size(), rest_.size()));
    return token;
}

std::optional<HtmlToken> HtmlTokens::tag()
{
    HtmlToken token;
    token.kind = rest_[1] == u'/' ? HtmlToken::Kind::end : HtmlToken::Kind::begin;
    const std::size_t nameAt = token.kind == HtmlToken::Kind::end ? 2 : 1;
    std::size_t nameEnd = nameAt;
    while (nameEnd < rest_.size() && !endsName(rest_[nameEnd]))
        ++nameEnd;
    const std::size_t end = tagEnd(nameEnd);
    token.name = nameOf(rest_.substr(nameAt, nameEnd - nameAt));
    token.attributes = rest_.substr(nameEnd, end - nameEnd);
    token.closed = token.attributes.ends_with(u'/');
    const bool ended = end < rest_.size();
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    return ended ? std::optional(std::move(token)) : std::nullopt;
}

// Where the '>' is; the document's length where there is none.
std::size_t HtmlTokens::tagEnd(std::size_t from)
{
    std::size_t at = from;
    bool afterEquals = false;
    while (at < rest_.size() && rest_[at] != u'>') {
        const bool quote = rest_[at] == u'"' || rest_[at] == u'\'';
        at = quote && afterEquals ? quotationEnd(at) : at + 1;
        const char16_t last = rest_[at - 1];
        afterEquals = last == u'=' || (afterEquals && isMarkupSpace(last));
    }
    return at;
}

// Behind the closing mark; where there is none, the opening one counts as a character.
std::size_t HtmlTokens::quotationEnd(std::size_t from)
{
    bool& none = rest_[from] == u'"' ? noDoubleQuote_ : noSingleQuote_;
    const std::size_t end = none ? std::u16string_view::npos : rest_.find(rest_[from], from + 1);
    none = end == std::u16string_view::npos;
    return none ? from + 1 : end + 1;
}

std::u16string_view HtmlTokens::rawText(std::string_view name, Unended unended)
{
    const bool known = std::find(neverEnded_.begin(), neverEnded_.end(), name) != neverEnded_.end();
    std::size_t end = known ? std::u16string_view::npos : rest_.find(u"</");
    while (end != std::u16string_view::npos && !namedAt(rest_.substr(end + 2), name))
        end = rest_.find(u"</", end + 2);
    if (end == std::u16string_view::npos) {
        if (!known)
            neverEnded_.emplace_back(name);
        end = unended == Unended::isRest ? rest_.size() : 0;
    }
    const std::u16string_view raw = rest_.substr(0, end);
    rest_.remove_prefix(end);
    return raw;
}

std::optional<std::u16string> htmlAttribute(std::u16string_view attributes, std::string_view name)
{
    for (Attributes each(attributes); each.next();) {
        if (nameOf(each.name) == name)
            return withoutReferences(each.value);
    }
    return std::nullopt;
}

std::u16string withoutReferences(std::u16string_view text)
{
    std::u16string resolved;
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find(u'&'), text.size());
        resolved += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty())
            break;
        const CharacterReference reference = characterReference(text);
        appendCharacter(resolved, reference.length > 0 ? reference.character : U'&');
        text.remove_prefix(std::max<std::size_t>(1, reference.length));
    }
    return resolved;
}

void appendCharacter(std::u16string& text, char32_t character)
{
    if (character >= 0x10000) {
        text += static_cast<char16_t>(0xD7C0 + (character >> 10));
        character = 0xDC00 + (character & 0x3FF);
    }
    text += static_cast<char16_t>(character);
}

}  // namespace kelvane
