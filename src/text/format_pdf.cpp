#include "text/format_pdf.h"

#include <algorithm>
#include <array>
#include <vector>

#include "text/output_lines.h"
#include "text/package_reading.h"
#include "text/property_rules.h"
#include "text/property_values.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

const std::string textProgram = "pdftotext";
const std::string factsProgram = "pdfinfo";

constexpr std::array pdfRules = {
    PropertyRule{"Title", "System.Title"},
    PropertyRule{"Subject", "System.Subject"},
    PropertyRule{"Author", "System.Author", ValueShape::texts},
    PropertyRule{"Keywords", "System.Keywords", ValueShape::keywords},
    PropertyRule{"Creator", "System.ApplicationName"},
    PropertyRule{"CreationDate", "System.Document.DateCreated", ValueShape::date},
    PropertyRule{"ModDate", "System.Document.DateSaved", ValueShape::date},
    PropertyRule{"Pages", "System.Document.PageCount", ValueShape::count},
};

std::size_t charactersIn(std::string_view utf8)
{
    return static_cast<std::size_t>(
        std::count_if(utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

constexpr auto bullets = std::to_array<std::string_view>({"\u2022", "\u25e6", "\u25aa", "\u2023", "\u00b7"});

bool beginsWithBullet(std::string_view line)
{
    return std::any_of(bullets.begin(), bullets.end(),
                       [line](std::string_view bullet) { return line.starts_with(bullet); });
}

// A page has lines where other formats of the same text have paragraphs, so lines are joined: all of a block but those
// that end so early that the next word would have had room.
class Paragraphs {
public:
    explicit Paragraphs(DocumentSink& sink) : sink_(sink) {}

    void line(std::string_view line)
    {
        line = trimmed(line);
        if (!line.empty())
            block_.push_back({std::string(line), charactersIn(line)});
        if (line.empty() || block_.size() > longestBlock)
            endBlock();
    }

    void endBlock()
    {
        for (const Line& line : block_)
            width_ = std::max(width_, line.length);
        for (std::size_t i = 0; i < block_.size(); ++i) {
            sink_.text(std::string_view(block_[i].text));
            if (goesOn(i))
                sink_.gap();
            else
                sink_.lineBreak();
        }
        block_.clear();
        width_ = 0;
    }

private:
    struct Line {
        std::string text;
        std::size_t length;
    };

    // Whether the paragraph goes on in the next line. Columns and cells of tables may share a block, hence a line is
    // measured by the lines around it as well, unless it is so short that names and headings are like it.
    bool goesOn(std::size_t i) const
    {
        constexpr std::size_t notShort = 30;
        if (i + 1 >= block_.size() || beginsWithBullet(block_[i + 1].text))
            return false;
        if (block_[i].length == 1)
            return beginsWithBullet(block_[i].text);
        const std::string_view next = block_[i + 1].text;
        const std::size_t needed = block_[i].length + 1 + charactersIn(next.substr(0, next.find(' ')));
        const std::size_t before = i > 0 ? block_[i - 1].length : 0;
        const std::size_t around = std::max({before, block_[i].length, block_[i + 1].length});
        return fills(needed, width_) || (block_[i].length >= notShort && fills(needed, around));
    }

    // Letters are not of one width, hence the margin.
    static bool fills(std::size_t needed, std::size_t width) { return needed * 100 > width * 82; }

    static constexpr std::size_t longestBlock = 500;
    DocumentSink& sink_;
    std::vector<Line> block_;
    std::size_t width_ = 0;
};

// What pdfinfo writes: "Title:           On Growth and Form".
void readFacts(RandomAccessFile& file, FilterPrograms& filters, DocumentSink& sink)
{
    constexpr std::size_t longestOutput = 256 * 1024;
    PropertyCollector collector(pdfRules);
    OutputLines lines([&collector](std::string_view line) {
        if (const std::size_t colon = line.find(':'); colon != std::string_view::npos)
            collector.add(line.substr(0, colon), line.substr(colon + 1));
    });
    std::size_t total = 0;
    (void)filters.run(factsProgram, {"-enc", "UTF-8", "-isodates", "-"}, file, [&](std::span<const std::byte> output) {
        lines.put(output);
        total += output.size();
        return total < longestOutput;
    });
    lines.finish();
    collector.give(sink);
}

// The programs do not tell why they gave up, but a document that is encrypted says so in its trailer, which is never
// encrypted itself.
bool isEncrypted(RandomAccessFile& file)
{
    constexpr std::string_view sign = "/Encrypt";
    constexpr std::size_t pieceSize = 64 * 1024;
    std::vector<std::byte> piece(pieceSize);
    for (std::uint64_t at = 0;; at += pieceSize - sign.size()) {
        const auto got = file.readAt(at, piece);
        if (!got)
            return false;
        if (asCharacters(std::span(piece).first(*got)).find(sign) != std::string_view::npos)
            return true;
        if (*got < pieceSize)
            return false;
    }
}

bool isPdf(std::span<const std::byte> head)
{
    // Readers tolerate a little in front of it; a page about the format is none.
    const std::string_view beginning = asCharacters(head.first(std::min<std::size_t>(head.size(), 1024)));
    const std::size_t at = beginning.find("%PDF-");
    return at != std::string_view::npos && beginning.substr(0, at).find('<') == std::string_view::npos;
}

ReadOutcome failedProgram(RandomAccessFile& file, const Error& error)
{
    if (error.kind == ErrorKind::notFound)
        return {TextOutcome::toolMissing, {}, textProgram};
    if (error.kind == ErrorKind::invalid)
        return {isEncrypted(file) ? TextOutcome::encrypted : TextOutcome::damaged, error.detail, {}};
    return failedReading(error);
}

ReadOutcome readPdf(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    Paragraphs paragraphs(sink);
    OutputLines lines([&paragraphs](std::string_view line) { paragraphs.line(line); });
    const Status status = services.filters.run(textProgram, {"-enc", "UTF-8", "-eol", "unix", "-q", "-", "-"}, file,
                                               [&](std::span<const std::byte> output) {
                                                   lines.put(output);
                                                   return sink.wantsMore();
                                               });
    lines.finish();
    paragraphs.endBlock();
    if (!status)
        return failedProgram(file, status.error());
    readFacts(file, services.filters, sink);
    return {};
}

}  // namespace

const DocumentFormat pdfFormat = {
    .name = "PDF",
    .masks = "pdf",
    .recognises = isPdf,
    .read = readPdf,
};

}  // namespace kelvane
