#include "text/html_properties.h"

#include <algorithm>
#include <array>

#include "base/utf.h"
#include "base/words.h"
#include "text/document_values.h"
#include "text/html_tokens.h"

namespace kelvane {
namespace {

enum class MetaShape { text, list, date };

struct MetaName {
    std::string_view name;
    std::string_view property;
    MetaShape shape;
};

// Names as people write them: of the HTML standard, of the Dublin Core, and of other systems.
constexpr auto metaNames = std::to_array<MetaName>({
    {"author", "System.Author", MetaShape::list},
    {"dc.creator", "System.Author", MetaShape::list},
    {"dcterms.creator", "System.Author", MetaShape::list},
    {"article:author", "System.Author", MetaShape::list},
    {"description", "System.Comment", MetaShape::text},
    {"dc.description", "System.Comment", MetaShape::text},
    {"dcterms.description", "System.Comment", MetaShape::text},
    {"og:description", "System.Comment", MetaShape::text},
    {"keywords", "System.Keywords", MetaShape::list},
    {"subject", "System.Subject", MetaShape::text},
    {"dc.subject", "System.Subject", MetaShape::text},
    {"dcterms.subject", "System.Subject", MetaShape::text},
    {"dc.title", "System.Title", MetaShape::text},
    {"dcterms.title", "System.Title", MetaShape::text},
    {"og:title", "System.Title", MetaShape::text},
    {"generator", "System.ApplicationName", MetaShape::text},
    {"copyright", "System.Copyright", MetaShape::text},
    {"dc.rights", "System.Copyright", MetaShape::text},
    {"dc.language", "System.Language", MetaShape::text},
    {"date", "System.Document.DateCreated", MetaShape::date},
    {"created", "System.Document.DateCreated", MetaShape::date},
    {"dc.date", "System.Document.DateCreated", MetaShape::date},
    {"dcterms.created", "System.Document.DateCreated", MetaShape::date},
    {"dcterms.issued", "System.Document.DateCreated", MetaShape::date},
    {"article:published_time", "System.Document.DateCreated", MetaShape::date},
    {"changed", "System.Document.DateSaved", MetaShape::date},
    {"last-modified", "System.Document.DateSaved", MetaShape::date},
    {"dcterms.modified", "System.Document.DateSaved", MetaShape::date},
    {"article:modified_time", "System.Document.DateSaved", MetaShape::date},
});

void putShaped(const MetaName& row, std::u16string_view content, DocumentSink& sink)
{
    if (row.shape == MetaShape::text) {
        sink.property(row.property, RawValue::text(collapsedText(content)));
    } else if (row.shape == MetaShape::list) {
        sink.property(row.property, listOf(content, row.property == "System.Author" ? u";" : u",;"));
    } else if (const auto date = parseIsoDate(toUtf8(content))) {
        sink.property(row.property, dateValue(*date));
    }
}

}  // namespace

void putPageTitle(std::u16string_view title, DocumentSink& sink)
{
    sink.property("System.Title", RawValue::text(collapsedText(title)));
}

void putMetaProperty(std::u16string_view attributes, DocumentSink& sink)
{
    auto name = htmlAttribute(attributes, "name");
    if (!name)
        name = htmlAttribute(attributes, "property");
    const auto content = htmlAttribute(attributes, "content");
    if (!name || !content)
        return;
    const std::string wanted = asciiLower(toUtf8(*name));
    const auto row = std::find_if(metaNames.begin(), metaNames.end(),
                                  [&wanted](const MetaName& each) { return each.name == wanted; });
    if (row != metaNames.end())
        putShaped(*row, *content, sink);
}

void putPageLanguage(std::u16string_view attributes, DocumentSink& sink)
{
    auto language = htmlAttribute(attributes, "lang");
    if (!language)
        language = htmlAttribute(attributes, "xml:lang");
    if (language)
        sink.property("System.Language", RawValue::text(collapsedText(*language)));
}

}  // namespace kelvane
