#include "text/document_sink.h"

#include <algorithm>

#include "base/utf.h"

namespace kelvane {
namespace {

constexpr bool isHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool isLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

// What a unit adds in UTF-8. The second half of a pair finds three bytes of its four counted; a lone half is shown as
// U+FFFD, which takes three.
constexpr std::uint64_t weightOf(char16_t unit, char16_t before)
{
    if (unit < 0x80)
        return 1;
    if (unit < 0x800)
        return 2;
    return isLowSurrogate(unit) && isHighSurrogate(before) ? 1 : 3;
}

bool endsWithSpace(char16_t last)
{
    return last == u' ' || last == u'\n' || last == u'\t' || last == u'\r';
}

bool isEmptyText(const RawValue& value)
{
    const auto* text = std::get_if<std::u16string>(&value.data);
    const auto* texts = std::get_if<std::vector<std::u16string>>(&value.data);
    return value.empty() || (text != nullptr && text->empty()) || (texts != nullptr && texts->empty());
}

}  // namespace

bool DocumentSink::text(std::u16string_view characters)
{
    if (!characters.empty() && wantsMore()) {
        flushParting();
        append(characters);
    }
    return wantsMore();
}

bool DocumentSink::text(std::string_view utf8)
{
    return text(toUtf16(utf8));
}

bool DocumentSink::lineBreak()
{
    if (characters_ > 0 && last_ != u'\n')
        parting_ = u'\n';
    return wantsMore();
}

bool DocumentSink::gap()
{
    if (characters_ > 0 && !endsWithSpace(last_) && parting_ == 0)
        parting_ = u' ';
    return wantsMore();
}

void DocumentSink::flushParting()
{
    if (parting_ != 0)
        append({&parting_, 1});
    parting_ = 0;
}

void DocumentSink::append(std::u16string_view characters)
{
    const std::size_t room = options_.textSample - document_.text.size();
    document_.text.append(characters.substr(0, room));
    document_.cut = document_.cut || characters.size() > room;
    const auto left = static_cast<std::size_t>(std::min<std::uint64_t>(
        characters.size(), options_.weighedCharacters() - std::min(characters_, options_.weighedCharacters())));
    for (const char16_t unit : characters.substr(0, left)) {
        document_.weight += weightOf(unit, last_);
        last_ = unit;
    }
    characters_ += left;
}

void DocumentSink::property(std::string_view name, RawValue value)
{
    const bool known = std::any_of(document_.properties.begin(), document_.properties.end(),
                                   [name](const DocumentProperty& property) { return property.name == name; });
    if (!known && !isEmptyText(value))
        document_.properties.push_back({std::string(name), std::move(value)});
}

void DocumentSink::property(std::string_view name, std::string_view utf8)
{
    property(name, RawValue::text(toUtf16(utf8)));
}

void DocumentSink::property(std::string_view name, std::vector<std::u16string> texts)
{
    property(name, RawValue::texts(std::move(texts)));
}

ExtractedDocument DocumentSink::take() &&
{
    // Half a pair at the end of the sample is no character.
    if (document_.cut && !document_.text.empty() && isHighSurrogate(document_.text.back()))
        document_.text.pop_back();
    document_.outcome = TextOutcome::extracted;
    return std::move(document_);
}

}  // namespace kelvane
