// What stands in the parts of packages: text, order of chapters and sheets, properties.
#include "document_fuzz.h"

#include <array>

#include "platform/linux/adapters.h"
#include "text/format_epub.h"
#include "text/format_fictionbook.h"
#include "text/format_ooxml.h"
#include "text/format_opendocument.h"

namespace kelvane {
namespace {

struct Kind {
    const DocumentFormat* format;
    std::vector<std::string_view> names;  // of the parts, in the order in which the input has them
};

const std::array<Kind, 6>& kinds()
{
    static const std::array<Kind, 6> all = {
        Kind{&ooxmlFormat, {"word/document.xml", "docProps/core.xml", "docProps/app.xml", "word/footnotes.xml"}},
        Kind{&ooxmlFormat,
             {"xl/worksheets/sheet1.xml", "xl/sharedStrings.xml", "xl/workbook.xml", "xl/_rels/workbook.xml.rels",
              "xl/worksheets/sheet2.xml"}},
        Kind{&ooxmlFormat, {"ppt/slides/slide1.xml", "ppt/presentation.xml", "ppt/notesSlides/notesSlide1.xml"}},
        Kind{&openDocumentFormat, {"content.xml", "meta.xml", "META-INF/manifest.xml"}},
        Kind{&epubFormat, {"a.opf", "a.html", "META-INF/container.xml", "b/c.html"}},
        Kind{&fictionBookFormat, {"a.fb2"}},
    };
    return all;
}

class Part final : public PackagePart {
public:
    Part(std::string_view name, std::string_view content) : name_(name), content_(content) {}
    std::string_view name() const override { return name_; }
    Result<std::vector<std::byte>> read(std::uint64_t limit, bool* cut) override
    {
        const auto bytes = std::as_bytes(std::span(content_.data(), content_.size()));
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(limit, bytes.size()));
        if (cut)
            *cut = count < bytes.size();
        return std::vector<std::byte>(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    }

private:
    std::string_view name_, content_;
};

// A package whose parts are the pieces of the input between bytes 0xFF, which stand in no UTF-8.
class Pieces final : public PackagedFiles {
public:
    Pieces(std::string_view input, const std::vector<std::string_view>& names) : input_(input), names_(names) {}
    Status walk(RandomAccessFile&, const PartSink& sink) override
    {
        std::string_view rest = input_;
        for (const std::string_view name : names_) {
            const std::size_t end = std::min(rest.find('\xFF'), rest.size());
            Part part(name, rest.substr(0, end));
            if (!sink(part))
                return {};
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        return {};
    }

private:
    std::string_view input_;
    const std::vector<std::string_view>& names_;
};

void tryParts(std::size_t choice, const std::string& input)
{
    const Kind& kind = kinds()[choice % kinds().size()];
    ExtractionOptions options;
    options.textSample = 1000;
    const testing::NarrowDecoding decoding;
    const auto xml = makePugixmlParsing();
    const auto filters = makeMissingFilterPrograms();
    Pieces packages(input, kind.names);
    DocumentSink sink(options);
    testing::MemoryDocument file(kind.format == &fictionBookFormat ? input : std::string());
    const ReadOutcome outcome =
        kind.format->read(file, DocumentServices{decoding, *xml, packages, *filters, options}, sink);
    const ExtractedDocument document = std::move(sink).take();
    require(document.text.size() <= 1000);
    require(outcome.outcome != TextOutcome::unreadable && outcome.outcome != TextOutcome::toolMissing);
    require(document.properties.size() < 100);
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 0)
        kelvane::tryParts(data[0], std::string(reinterpret_cast<const char*>(data) + 1, size - 1));
    return 0;
}
