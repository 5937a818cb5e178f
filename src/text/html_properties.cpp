#include "text/html_properties.h"

#include <algorithm>
#include <array>

#include "base/utf.h"
#include "base/words.h"
#include "text/document_values.h"
#include "text/html_tokens.h"

namespace kelvane {
namespace {

enum class Shape { text, list, date };

struct MetaName {
    std::string_view name;
    std::string_view property;
    Shape shape;
};

// Names as people write them: of the HTML standard, of the Dublin Core, and of other systems.
constexpr auto metaNames = std::to_array<MetaName>({
    {"author", "System.Author", Shape::list},
    {"dc.creator", "System.Author", Shape::list},
    {"dcterms.creator", "System.Author", Shape::list},
    {"article:author", "System.Author", Shape::list},
    {"description", "System.Comment", Shape::text},
    {"dc.description", "System.Comment", Shape::text},
    {"dcterms.description", "System.Comment", Shape::text},
    {"og:description", "System.Comment", Shape::text},
    {"keywords", "System.Keywords", Shape::list},
    {"subject", "System.Subject", Shape::text},
    {"dc.subject", "System.Subject", Shape::text},
    {"dcterms.subject", "System.Subject", Shape::text},
    {"dc.title", "System.Title", Shape::text},
    {"dcterms.title", "System.Title", Shape::text},
    {"og:title", "System.Title", Shape::text},
    {"generator", "System.ApplicationName", Shape::text},
    {"copyright", "System.Copyright", Shape::text},
    {"dc.rights", "System.Copyright", Shape::text},
    {"dc.language", "System.Language", Shape::text},
    {"date", "System.Document.DateCreated", Shape::date},
    {"created", "System.Document.DateCreated", Shape::date},
    {"dc.date", "System.Document.DateCreated", Shape::date},
    {"dcterms.created", "System.Document.DateCreated", Shape::date},
    {"dcterms.issued", "System.Document.DateCreated", Shape::date},
    {"article:published_time", "System.Document.DateCreated", Shape::date},
    {"changed", "System.Document.DateSaved", Shape::date},
    {"last-modified", "System.Document.DateSaved", Shape::date},
    {"dcterms.modified", "System.Document.DateSaved", Shape::date},
    {"article:modified_time", "System.Document.DateSaved", Shape::date},
});

void putShaped(const MetaName& row, std::u16string_view content, DocumentSink& sink)
{
    if (row.shape == Shape::text) {
        sink.property(row.property, RawValue::text(collapsedText(content)));
    } else if (row.shape == Shape::list) {
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
