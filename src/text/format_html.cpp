#include "text/format_html.h"

#include <algorithm>
#include <array>

#include "base/words.h"
#include "text/html_text.h"
#include "text/stream_reading.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

// What pages begin with (WHATWG MIME Sniffing Standard, section 7.1).
constexpr auto firstTags = std::to_array<std::string_view>(
    {"!doctype html", "html",   "head", "body", "title", "meta", "link", "script", "style", "iframe", "table", "div",
     "font",          "center", "h1",   "h2",   "h3",    "p",    "a",    "b",      "br",    "hr",     "ul",    "ol",
     "sami"});

bool beginsWithTag(std::string_view beginning, std::string_view name)
{
    return beginning.starts_with('<') && beginning.substr(1).starts_with(name) &&
           (beginning.size() == name.size() + 1 ||
            std::string_view(" \t\r\n>/").find(beginning[name.size() + 1]) != std::string_view::npos);
}

bool recognisesHtml(std::span<const std::byte> head)
{
    const std::string beginning = markupBeginning(head);
    return std::any_of(firstTags.begin(), firstTags.end(),
                       [&beginning](std::string_view name) { return beginsWithTag(beginning, name); });
}

// Skips "<!-- ... -->" or "<?xml ... ?>" at the front; false when neither is there.
bool skipBefore(std::string_view& text, std::string_view opening, std::string_view closing)
{
    if (!text.starts_with(opening))
        return false;
    const std::size_t end = text.find(closing, opening.size());
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + closing.size());
    return true;
}

ReadOutcome readHtml(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    const auto bytes = readBeginning(file, services.options.largestStream);
    if (!bytes)
        return unreadable(bytes.error());
    if (!bytes->empty() && !looksLikeText(std::span(*bytes).first(std::min<std::size_t>(bytes->size(), 4096))))
        return {TextOutcome::damaged, {}, {}};
    const std::string declared = declaredMarkupCharset(asCharacters(*bytes));
    putHtmlText(decodeText(*bytes, services.decoding, declared).text, sink, true);
    if (bytes->size() < file.size())
        sink.leavesMore();
    return {};
}

}  // namespace

std::string markupBeginning(std::span<const std::byte> head)
{
    std::string latin;
    for (const char byte : asCharacters(head)) {
        if (byte != '\0')
            latin += byte;
    }
    std::string_view text = latin;
    if (const std::string_view marked = markedCharset(head); !marked.empty())
        text.remove_prefix(marked.starts_with("utf-8") ? 3 : 2);
    do {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\f"), text.size()));
    } while (skipBefore(text, "<!--", "-->") || skipBefore(text, "<?xml", "?>"));
    return asciiLower(text.substr(0, 100));
}

const DocumentFormat htmlFormat = {.name = "HTML",
                                   .masks = "htm,html,xhtml,xht,shtml,shtm,dhtml,hta,htx,smi,sami",
                                   .textual = true,
                                   .recognises = recognisesHtml,
                                   .read = readHtml};

}  // namespace kelvane
