#include "text/format_opendocument.h"

#include <algorithm>
#include <array>

#include "text/package_reading.h"
#include "text/property_rules.h"
#include "text/property_values.h"
#include "text/spaced_text.h"

namespace kelvane {
namespace {

constexpr std::string_view contentName = "content.xml";
constexpr std::string_view metaName = "meta.xml";
constexpr std::string_view manifestName = "META-INF/manifest.xml";

// The first author stands in an element of its own, beside the one who saved last.
constexpr std::array metaRules = {
    PropertyRule{"title", "System.Title"},
    PropertyRule{"subject", "System.Subject"},
    PropertyRule{"initial-creator", "System.Author", ValueShape::texts},
    PropertyRule{"creator", "System.Author", ValueShape::texts},
    PropertyRule{"creator", "System.Document.LastAuthor"},
    PropertyRule{"keyword", "System.Keywords", ValueShape::keywords},
    PropertyRule{"description", "System.Comment"},
    PropertyRule{"language", "System.Language"},
    PropertyRule{"generator", "System.ApplicationName"},
    PropertyRule{"creation-date", "System.Document.DateCreated", ValueShape::date},
    PropertyRule{"date", "System.Document.DateSaved", ValueShape::date},
    PropertyRule{"print-date", "System.Document.DatePrinted", ValueShape::date},
    PropertyRule{"editing-cycles", "System.Document.RevisionNumber"},
    PropertyRule{"editing-duration", "System.Document.TotalEditingTime", ValueShape::duration},
    PropertyRule{"page-count", "System.Document.PageCount", ValueShape::count},
    PropertyRule{"word-count", "System.Document.WordCount", ValueShape::count},
    PropertyRule{"character-count", "System.Document.CharacterCount", ValueShape::count},
    PropertyRule{"paragraph-count", "System.Document.ParagraphCount", ValueShape::count},
};

class MetaHandler final : public PropertyHandler {
public:
    MetaHandler() : PropertyHandler(metaRules) {}

private:
    // Counts are attributes of one element.
    void begins(std::string_view name, XmlAttributes attributes) override
    {
        PropertyHandler::begins(name, attributes);
        for (const auto& [key, value] : attributes)
            if (name == "document-statistic")
                collector_.add(localName(key), value);
    }
};

// What was deleted while changes were tracked, comments, descriptions of pictures, numbers of notes and pages, and the
// readings printed above characters.
constexpr auto odfLeftOut = std::to_array<std::string_view>(
    {"tracked-changes", "annotation", "desc", "note-citation", "page-number", "ruby-text", "forms"});

// The text as a reader of the document finds it. Notes go to its end, as other formats of the same text have them.
class ContentHandler final : public TextHandler {
public:
    using TextHandler::TextHandler;

    void giveNotes()
    {
        sink_.lineBreak();
        sink_.text(trimmed(notes_));
    }

private:
    bool leavesOut(std::string_view name, XmlAttributes) override
    {
        // A title within a frame is that of a picture; elsewhere it is a field that shows the document's.
        return isOneOf(odfLeftOut, name) || (name == "title" && frames_ > 0);
    }

    void begins(std::string_view name, XmlAttributes attributes) override
    {
        if (isParagraph(name)) {
            ++paragraphs_;
            collapser().begin();
        } else if (isNote(name)) {
            ++openNotes_;
        } else if (name == "table-cell") {
            ++cells_;
        } else if (name == "frame") {
            ++frames_;
        } else if (name == "s") {
            blanks(wholeNumber(attributeOf(attributes, "c")).value_or(1));
        } else if (name == "tab") {
            blanks(1);
        } else if (name == "line-break") {
            breakLine();
        }
    }

    void ends(std::string_view name) override
    {
        if (isParagraph(name)) {
            paragraphs_ -= paragraphs_ > 0;
            cells_ > 0 ? gap() : breakLine();
        } else if (isNote(name)) {
            openNotes_ -= openNotes_ > 0;
        } else if (name == "table-cell") {
            cells_ -= cells_ > 0;
        } else if (name == "frame") {
            frames_ -= frames_ > 0;
        } else if (name == "table-row" || name == "table") {
            breakLine();
        }
    }

    void text(std::string_view characters) override
    {
        if (paragraphs_ > 0)
            put(collapser()(characters));
    }

    static bool isParagraph(std::string_view name) { return name == "p" || name == "h"; }
    static bool isNote(std::string_view name) { return name == "note-body" || name == "notes"; }

    void put(std::string_view characters)
    {
        if (openNotes_ == 0)
            sink_.text(characters);
        else if (notes_.size() < mostNotes)
            notes_ += characters;
    }

    void blanks(std::size_t count)
    {
        put(std::string(std::min<std::size_t>(count, 100), ' '));
        collapser().begin();
    }

    void gap() { openNotes_ == 0 ? (void)sink_.gap() : put(" "); }

    void breakLine()
    {
        openNotes_ == 0 ? (void)sink_.lineBreak() : put("\n");
        collapser().begin();
    }

    static constexpr std::size_t mostNotes = 1024 * 1024;
    // A note stands in the middle of a line of the text.
    SpaceCollapser& collapser() { return openNotes_ == 0 ? body_ : note_; }

    SpaceCollapser body_, note_;
    std::size_t paragraphs_ = 0, cells_ = 0, frames_ = 0, openNotes_ = 0;  // that are open, one in the other
    std::string notes_;
};

bool isOpenDocument(std::span<const std::byte> head)
{
    const PackageHead package = packageHead(head);
    return package.mimetype.starts_with("application/vnd.oasis.opendocument.") ||
           package.mimetype.starts_with("application/vnd.sun.xml.");
}

bool isOfOpenDocument(std::string_view name)
{
    return name == contentName || name == metaName || name == manifestName || name == "encrypted-package";
}

// The parts are encrypted each by itself, or all in one, and the manifest says how.
bool isEncrypted(const PackageParts& parts)
{
    constexpr std::string_view sign = "encryption-data";
    const auto manifest = parts.find(manifestName);
    if (manifest == parts.end())
        return false;
    const auto& bytes = manifest->second.bytes;
    return std::search(bytes.begin(), bytes.end(), sign.begin(), sign.end(),
                       [](std::byte byte, char c) { return std::to_integer<char>(byte) == c; }) != bytes.end();
}

bool readContent(const PartContent& part, const DocumentServices& services, DocumentSink& sink)
{
    ContentHandler handler(sink);
    const bool whole = parsePart(part, services, handler);
    handler.giveNotes();
    return whole;
}

ReadOutcome readOpenDocument(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    PackageParts parts;
    ReadOutcome reading = readParts(file, services, sink, isOfOpenDocument, parts);
    if (reading.outcome != TextOutcome::extracted && parts.empty())
        return reading;
    if (isEncrypted(parts))
        return {TextOutcome::encrypted, {}, {}};
    if (const auto meta = parts.find(metaName); meta != parts.end()) {
        MetaHandler handler;
        (void)parsePart(meta->second, services, handler);
        handler.give(sink);
    }
    const auto content = parts.find(contentName);
    const bool whole = content != parts.end() && readContent(content->second, services, sink);
    return whole || reading.outcome != TextOutcome::extracted
               ? reading
               : ReadOutcome{TextOutcome::damaged, "the content is no XML", {}};
}

}  // namespace

const DocumentFormat openDocumentFormat = {
    .name = "OpenDocument",
    .masks = "odt,ott,odm,ods,ots,odp,otp,odg,otg,sxw,stw,sxc,stc,sxi,sti",
    .recognises = isOpenDocument,
    .read = readOpenDocument,
};

}  // namespace kelvane
