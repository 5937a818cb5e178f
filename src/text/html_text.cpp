#include "text/html_text.h"

#include <algorithm>
#include <array>

#include "base/utf.h"
#include "base/words.h"
#include "text/collapsed_text.h"
#include "text/html_properties.h"
#include "text/html_tokens.h"

namespace kelvane {
namespace {

constexpr auto blockNames = std::to_array<std::string_view>(
    {"address",    "article",   "aside",  "blockquote", "body",    "br",     "caption",  "center",
     "dd",         "details",   "dialog", "dir",        "div",     "dl",     "dt",       "fieldset",
     "figcaption", "figure",    "footer", "form",       "h1",      "h2",     "h3",       "h4",
     "h5",         "h6",        "head",   "header",     "hgroup",  "hr",     "html",     "legend",
     "li",         "listing",   "main",   "menu",       "nav",     "ol",     "optgroup", "option",
     "p",          "plaintext", "pre",    "search",     "section", "select", "summary",  "sync",
     "table",      "tbody",     "tfoot",  "thead",      "title",   "tr",     "ul",       "xmp"});
static_assert(std::is_sorted(blockNames.begin(), blockNames.end()));

// No part of the page as it is read.
constexpr auto hiddenNames = std::to_array<std::string_view>({"iframe", "noembed", "noframes", "script", "style"});

template <std::size_t Size>
bool contains(const std::array<std::string_view, Size>& names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isBlock(std::string_view name)
{
    return std::binary_search(blockNames.begin(), blockNames.end(), name);
}

bool isPreformatted(std::string_view name)
{
    return name == "pre" || name == "listing" || name == "xmp";
}

class PageWriter {
public:
    PageWriter(std::u16string_view document, DocumentSink& sink, bool withProperties)
        : tokens_(document), sink_(sink), collapsed_(sink), withProperties_(withProperties)
    {
    }

    void run()
    {
        while (sink_.wantsMore()) {
            const auto token = tokens_.next();
            if (!token)
                return;
            if (token->kind == HtmlToken::Kind::text)
                put(token->verbatim ? std::u16string(token->text) : withoutReferences(token->text));
            else if (token->kind == HtmlToken::Kind::begin)
                begin(*token);
            else
                end(*token);
        }
    }

private:
    void put(std::u16string characters)
    {
        if (templates_ > 0)
            return;
        if (preformatted_ == 0)
            collapsed_.put(characters);
        else
            putPreformatted(characters);
        afterPre_ = false;
    }

    void putPreformatted(std::u16string& characters)
    {
        std::erase_if(characters, [](char16_t unit) { return unit == u'\r' || unit == 0; });
        // A line break right behind the tag is no part of the text.
        const bool leading = afterPre_ && characters.starts_with(u'\n');
        sink_.text(std::u16string_view(characters).substr(leading ? 1 : 0));
    }

    void begin(const HtmlToken& tag)
    {
        part(tag.name);
        if (contains(hiddenNames, tag.name) && !tag.closed)
            (void)tokens_.rawText(tag.name, HtmlTokens::Unended::isRest);
        else if (tag.name == "title" && !tag.closed)
            takeTitle();
        else if (tag.name == "textarea" && !tag.closed)
            put(withoutReferences(tokens_.rawText(tag.name, HtmlTokens::Unended::isNothing)));
        else if (tag.name == "template" && !tag.closed)
            ++templates_;
        if (isPreformatted(tag.name) && !tag.closed)
            ++preformatted_;
        afterPre_ = tag.name == "pre";
        if (withProperties_)
            takeProperties(tag);
    }

    void end(const HtmlToken& tag)
    {
        part(tag.name);
        if (tag.name == "template")
            templates_ -= std::min(templates_, 1u);
        if (isPreformatted(tag.name))
            preformatted_ -= std::min(preformatted_, 1u);
    }

    void part(std::string_view name)
    {
        if (isBlock(name))
            sink_.lineBreak();
        else if (name == "td" || name == "th")
            sink_.gap();
    }

    void takeTitle()
    {
        const std::u16string_view title = tokens_.rawText("title", HtmlTokens::Unended::isNothing);
        if (withProperties_)
            putPageTitle(withoutReferences(title), sink_);
    }

    void takeProperties(const HtmlToken& tag)
    {
        if (tag.name == "meta")
            putMetaProperty(tag.attributes, sink_);
        else if (tag.name == "html")
            putPageLanguage(tag.attributes, sink_);
    }

    HtmlTokens tokens_;
    DocumentSink& sink_;
    CollapsedText collapsed_;
    const bool withProperties_;
    unsigned preformatted_ = 0, templates_ = 0;
    bool afterPre_ = false;
};

std::string narrowed(std::u16string_view text)
{
    return toUtf8(text.substr(0, 100));
}

// "text/html; charset=utf-8"
std::string charsetOfType(std::u16string_view type)
{
    const std::string lower = asciiLower(narrowed(type));
    const std::size_t at = lower.find("charset=");
    if (at == std::string::npos)
        return {};
    const std::size_t first = std::min(lower.find_first_not_of(" \"'", at + 8), lower.size());
    return lower.substr(first, lower.find_first_of(" \"';", first) - first);
}

std::string charsetOfMeta(std::u16string_view attributes)
{
    if (const auto charset = htmlAttribute(attributes, "charset"))
        return narrowed(*charset);
    const auto type = htmlAttribute(attributes, "content");
    return type && htmlAttribute(attributes, "http-equiv") ? charsetOfType(*type) : std::string();
}

// <?xml version="1.0" encoding="..."?>
std::string charsetOfXml(std::string_view head)
{
    const std::string_view declaration = head.substr(0, head.find("?>"));
    if (!declaration.starts_with("<?xml"))
        return {};
    const std::u16string attributes = toUtf16(declaration.substr(5));
    return narrowed(htmlAttribute(attributes, "encoding").value_or(u""));
}

}  // namespace

void putHtmlText(std::u16string_view document, DocumentSink& sink, bool withProperties)
{
    PageWriter(document, sink, withProperties).run();
}

std::string declaredMarkupCharset(std::string_view head)
{
    constexpr std::size_t farEnough = 4096;
    head = head.substr(0, farEnough);
    if (std::string charset = charsetOfXml(head); !charset.empty())
        return charset;
    const std::u16string text = toUtf16(head);
    HtmlTokens tokens(text);
    while (const auto token = tokens.next()) {
        if (token->kind != HtmlToken::Kind::begin || token->name != "meta")
            continue;
        if (std::string charset = charsetOfMeta(token->attributes); !charset.empty())
            return charset;
    }
    return {};
}

}  // namespace kelvane
