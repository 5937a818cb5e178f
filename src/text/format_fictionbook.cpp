#include "text/format_fictionbook.h"

#include <algorithm>
#include <array>

#include "text/package_reading.h"
#include "text/property_rules.h"
#include "text/spaced_text.h"
#include "text/stream_reading.h"
#include "text/xml_bytes.h"

namespace kelvane {
namespace {

// Fields of the description, by the element that holds them and their own name.
constexpr std::array descriptionRules = {
    PropertyRule{"title-info/book-title", "System.Title"},
    PropertyRule{"title-info/author", "System.Author", ValueShape::texts},
    PropertyRule{"title-info/keywords", "System.Keywords", ValueShape::keywords},
    PropertyRule{"title-info/annotation", "System.Comment"},
    PropertyRule{"title-info/genre", "System.Category", ValueShape::texts},
    PropertyRule{"title-info/lang", "System.Language"},
    PropertyRule{"title-info/date", "System.Document.DateCreated", ValueShape::date},
    PropertyRule{"title-info/sequence", "System.Media.SeriesName"},
    PropertyRule{"publish-info/publisher", "System.Media.Publisher"},
    PropertyRule{"document-info/program-used", "System.ApplicationName"},
};

constexpr auto sections = std::to_array<std::string_view>({"title-info", "publish-info", "document-info"});
constexpr auto blocks = std::to_array<std::string_view>({"p", "v", "subtitle", "title", "text-author", "tr", "stanza",
                                                         "epigraph", "cite", "poem", "section", "empty-line", "body"});
constexpr auto bookLeftOut = std::to_array<std::string_view>({"binary", "stylesheet", "coverpage", "src-title-info"});

class BookHandler final : public TextHandler {
public:
    explicit BookHandler(DocumentSink& sink) : TextHandler(sink), collector_(descriptionRules) {}
    void give() const { collector_.give(sink_); }

private:
    bool leavesOut(std::string_view name, XmlAttributes) override { return isOneOf(bookLeftOut, name); }

    void begins(std::string_view name, XmlAttributes attributes) override
    {
        if (isOneOf(sections, name)) {
            section_ = name;
        } else if (name == "body") {
            inBody_ = true;
        } else if (inBody_ && isOneOf(blocks, name)) {
            breakLine();
        } else if (!section_.empty()) {
            beginField(name, attributes);
        }
    }

    void beginField(std::string_view name, XmlAttributes attributes)
    {
        if (field_.empty())
            field_ = name;
        if (name == field_) {
            value_ = attributeOf(attributes, name == "date" ? "value" : "name");  // of a date and of a sequence
            given_ = !value_.empty();
        } else if (!value_.empty() && !value_.ends_with(' ')) {
            value_ += ' ';  // names in parts, annotations in paragraphs
        }
    }

    void ends(std::string_view name) override
    {
        if (name == section_) {
            section_.clear();
        } else if (!field_.empty() && name == field_) {
            collector_.add(section_ + "/" + field_, value_);
            field_.clear();
        } else if (inBody_ && (name == "td" || name == "th")) {
            sink_.gap();
        } else if (inBody_ && isOneOf(blocks, name)) {
            breakLine();
        }
    }

    void text(std::string_view characters) override
    {
        if (inBody_)
            sink_.text(collapse_(characters));
        else if (!field_.empty() && !given_ && value_.size() < longestField)
            value_ += SpaceCollapser()(characters);
    }

    void breakLine()
    {
        sink_.lineBreak();
        collapse_.begin();
    }

    static constexpr std::size_t longestField = 32 * 1024;
    PropertyCollector collector_;
    SpaceCollapser collapse_;
    std::string section_, field_, value_;
    bool inBody_ = false;
    bool given_ = false;  // the value is an attribute
};

bool isFictionBook(std::span<const std::byte> head)
{
    const PackageHead package = packageHead(head);
    if (!package.names.empty())
        return package.names[0].ends_with(".fb2");
    std::string bytes(reinterpret_cast<const char*>(head.data()), head.size());
    bytes.erase(std::remove(bytes.begin(), bytes.end(), '\0'), bytes.end());  // UTF-16
    return bytes.find("<FictionBook") != std::string::npos;
}

bool readBook(const PartContent& book, const DocumentServices& services, DocumentSink& sink)
{
    BookHandler handler(sink);
    const bool whole = parsePart({xmlInUtf8(book.bytes, services.decoding), book.cut}, services, handler);
    handler.give();
    return whole;
}

ReadOutcome readFictionBook(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    PackageParts books;
    ReadOutcome reading;
    std::array<std::byte, 64> beginning{};
    const auto got = file.readAt(0, beginning);
    if (got && !packageHead(beginning).names.empty()) {
        reading = readParts(
            file, services, sink, [](std::string_view name) { return name.ends_with(".fb2"); }, books);
    } else {
        auto bytes = readBeginning(file, streamLimit(services.options));
        if (!bytes)
            return unreadable(bytes.error());
        books[""] = {std::move(*bytes), file.size() > streamLimit(services.options)};
    }
    for (const auto& [name, book] : books)
        if (!readBook(book, services, sink) && reading.outcome == TextOutcome::extracted)
            reading = {TextOutcome::damaged, "no XML", {}};
    return reading;
}

}  // namespace

const DocumentFormat fictionBookFormat = {
    .name = "FictionBook",
    .masks = "fb2,fbz,*.fb2.zip",
    .textual = true,
    .recognises = isFictionBook,
    .read = readFictionBook,
};

}  // namespace kelvane
