#include "text/format_ooxml.h"

#include <algorithm>
#include <array>

#include "text/docx_text.h"
#include "text/package_reading.h"
#include "text/pptx_text.h"
#include "text/property_rules.h"
#include "text/xlsx_text.h"

namespace kelvane {
namespace {

// docProps/core.xml, whose elements are those of Dublin Core and a few of its own.
constexpr std::array coreRules = {
    PropertyRule{"title", "System.Title"},
    PropertyRule{"subject", "System.Subject"},
    PropertyRule{"creator", "System.Author", ValueShape::texts},
    PropertyRule{"keywords", "System.Keywords", ValueShape::keywords},
    PropertyRule{"description", "System.Comment"},
    PropertyRule{"category", "System.Category", ValueShape::texts},
    PropertyRule{"contentStatus", "System.ContentStatus"},
    PropertyRule{"contentType", "System.ContentType"},
    PropertyRule{"language", "System.Language"},
    PropertyRule{"lastModifiedBy", "System.Document.LastAuthor"},
    PropertyRule{"revision", "System.Document.RevisionNumber"},
    PropertyRule{"version", "System.Document.Version"},
    PropertyRule{"created", "System.Document.DateCreated", ValueShape::date},
    PropertyRule{"modified", "System.Document.DateSaved", ValueShape::date},
    PropertyRule{"lastPrinted", "System.Document.DatePrinted", ValueShape::date},
};

// docProps/app.xml
constexpr std::array applicationRules = {
    PropertyRule{"Application", "System.ApplicationName"},
    PropertyRule{"Company", "System.Company"},
    PropertyRule{"Manager", "System.Document.Manager"},
    PropertyRule{"Template", "System.Document.Template"},
    PropertyRule{"PresentationFormat", "System.Document.PresentationFormat"},
    PropertyRule{"TotalTime", "System.Document.TotalEditingTime", ValueShape::minutes},
    PropertyRule{"Pages", "System.Document.PageCount", ValueShape::count},
    PropertyRule{"Words", "System.Document.WordCount", ValueShape::count},
    PropertyRule{"Characters", "System.Document.CharacterCount", ValueShape::count},
    PropertyRule{"Lines", "System.Document.LineCount", ValueShape::count},
    PropertyRule{"Paragraphs", "System.Document.ParagraphCount", ValueShape::count},
    PropertyRule{"Slides", "System.Document.SlideCount", ValueShape::count},
    PropertyRule{"Notes", "System.Document.NoteCount", ValueShape::count},
    PropertyRule{"HiddenSlides", "System.Document.HiddenSlideCount", ValueShape::count},
    PropertyRule{"MMClips", "System.Document.MultimediaClipCount", ValueShape::count},
};

// What the beginnings of names tell in the first bytes of a package.
constexpr auto signs = std::to_array<std::string_view>(
    {"[Content_Types].xml", "_rels/.rels", "docProps/", "word/", "xl/", "ppt/", "customXml/"});

bool isOoxml(std::span<const std::byte> head)
{
    const PackageHead package = packageHead(head);
    return std::any_of(package.names.begin(), package.names.end(), [](std::string_view name) {
        return std::any_of(signs.begin(), signs.end(),
                           [name](std::string_view sign) { return name.starts_with(sign); });
    });
}

bool isOfOffice(std::string_view name)
{
    return isDocxPart(name) || isXlsxPart(name) || isPptxPart(name) || name == "docProps/core.xml" ||
           name == "docProps/app.xml";
}

// Damaged properties do not make the text any worse.
void readProperties(const PackageParts& parts, std::string_view name, std::span<const PropertyRule> rules,
                    const DocumentServices& services, DocumentSink& sink)
{
    const auto part = parts.find(name);
    if (part == parts.end())
        return;
    PropertyHandler handler(rules);
    (void)parsePart(part->second, services, handler);
    handler.give(sink);
}

ReadOutcome readText(const PackageParts& parts, const DocumentServices& services, DocumentSink& sink)
{
    struct Kind {
        bool (*isMain)(std::string_view name);
        bool (*read)(const PackageParts&, const DocumentServices&, DocumentSink&);
    };
    constexpr std::array kinds = {Kind{isDocxMain, readDocxText}, Kind{isXlsxMain, readXlsxText},
                                  Kind{isPptxMain, readPptxText}};
    for (const Kind& kind : kinds) {
        if (std::none_of(parts.begin(), parts.end(), [&](const auto& part) { return kind.isMain(part.first); }))
            continue;
        if (kind.read(parts, services, sink))
            return {};
        return {TextOutcome::damaged, "a part is no XML", {}};
    }
    return {TextOutcome::unknownFormat, {}, {}};
}

ReadOutcome readOoxml(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    PackageParts parts;
    ReadOutcome reading = readParts(file, services, sink, isOfOffice, parts);
    readProperties(parts, "docProps/core.xml", coreRules, services, sink);
    readProperties(parts, "docProps/app.xml", applicationRules, services, sink);
    ReadOutcome text = readText(parts, services, sink);
    return reading.outcome != TextOutcome::extracted ? reading : text;
}

}  // namespace

const DocumentFormat ooxmlFormat = {
    .name = "Office Open XML",
    .masks = "docx,docm,dotx,dotm,xlsx,xlsm,xltx,xltm,pptx,pptm,potx,potm,ppsx,ppsm",
    .recognises = isOoxml,
    .read = readOoxml,
};

}  // namespace kelvane
