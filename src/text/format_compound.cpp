#include "text/format_compound.h"

#include <algorithm>
#include <array>

#include "text/compound_file.h"
#include "text/little_endian.h"
#include "text/output_lines.h"
#include "text/package_reading.h"
#include "text/property_set.h"
#include "text/property_values.h"

namespace kelvane {
namespace {

// Which program reads a document is told by the stream that holds it.
struct Kind {
    const char* stream;
    const char* program;
    std::vector<std::string> arguments;
    bool (*isEncrypted)(CompoundFile& file);
};

std::vector<std::byte> beginningOf(CompoundFile& file, const char* stream, std::size_t most)
{
    auto bytes = file.read(stream, most);
    return bytes ? std::move(*bytes) : std::vector<std::byte>();
}

// [MS-DOC], section 2.5.1: the flag fEncrypted of the header.
bool isEncryptedText(CompoundFile& file)
{
    constexpr std::uint16_t encrypted = 0x0100;
    return (littleEndian<std::uint16_t>(beginningOf(file, "WordDocument", 64), 10) & encrypted) != 0;
}

// [MS-XLS], section 2.4.117: a record FilePass among the first ones of the workbook.
bool hasFilePass(std::span<const std::byte> workbook)
{
    constexpr std::uint16_t filePass = 0x2F;
    std::size_t at = 0;
    for (int i = 0; i < 16 && at + 4 <= workbook.size(); ++i) {
        if (littleEndian<std::uint16_t>(workbook, at) == filePass)
            return true;
        at += std::size_t{4} + littleEndian<std::uint16_t>(workbook, at + 2);
    }
    return false;
}

bool isEncryptedWorkbook(CompoundFile& file)
{
    return hasFilePass(beginningOf(file, "Workbook", 4096)) || hasFilePass(beginningOf(file, "Book", 4096));
}

// [MS-PPT], section 2.3.2: the token at the beginning of the user's record.
bool isEncryptedPresentation(CompoundFile& file)
{
    constexpr std::uint32_t encrypted = 0xF3D1C4DF;
    return littleEndian<std::uint32_t>(beginningOf(file, "Current User", 64), 12) == encrypted;
}

const std::array<Kind, 4>& kinds()
{
    // Without the name of a file these two crash.
    static const std::vector<std::string> sheets{"-d", "utf-8", "-q", "0", "-c", " ", "/dev/stdin"};
    static const std::vector<std::string> slides{"-d", "utf-8", "/dev/stdin"};
    static const std::array<Kind, 4> all = {
        Kind{"WordDocument", "catdoc", {"-w", "-d", "utf-8"}, isEncryptedText},
        Kind{"Workbook", "xls2csv", sheets, isEncryptedWorkbook},
        Kind{"Book", "xls2csv", sheets, isEncryptedWorkbook},
        Kind{"PowerPoint Document", "catppt", slides, isEncryptedPresentation},
    };
    return all;
}

void readProperties(CompoundFile& compound, const DocumentServices& services, DocumentSink& sink)
{
    constexpr std::size_t longest = 1024 * 1024;
    if (const auto summary = compound.read("\x05SummaryInformation", longest))
        putSummary(*summary, services.decoding, sink);
    if (const auto summary = compound.read("\x05"
                                           "DocumentSummaryInformation",
                                           longest))
        putDocumentSummary(*summary, services.decoding, sink);
}

// Empty lines part paragraphs in the output of these programs, as in no other text here.
ReadOutcome readText(const Kind& kind, RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    OutputLines lines([&sink](std::string_view line) {
        sink.text(trimmed(line));
        sink.lineBreak();
    });
    const Status status =
        services.filters.run(kind.program, kind.arguments, file, [&](std::span<const std::byte> output) {
            lines.put(output);
            return sink.wantsMore();
        });
    lines.finish();
    if (status.ok())
        return {};
    if (status.error().kind == ErrorKind::notFound)
        return {TextOutcome::toolMissing, {}, kind.program};
    return failedReading(status.error());
}

ReadOutcome readCompound(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    auto compound = CompoundFile::open(file);
    if (!compound)
        return failedReading(compound.error());
    // What documents from 2007 on become under a password.
    if (compound->has("EncryptedPackage"))
        return {TextOutcome::encrypted, {}, {}};
    const auto kind = std::find_if(kinds().begin(), kinds().end(),
                                   [&](const Kind& candidate) { return compound->has(candidate.stream); });
    if (kind == kinds().end())
        return {TextOutcome::unknownFormat, {}, {}};
    readProperties(*compound, services, sink);
    if (kind->isEncrypted(*compound))
        return {TextOutcome::encrypted, {}, {}};
    return readText(*kind, file, services, sink);
}

bool isCompound(std::span<const std::byte> head)
{
    constexpr std::uint64_t signature = 0xE11AB1A1E011CFD0;
    return littleEndian<std::uint64_t>(head, 0) == signature;
}

}  // namespace

const DocumentFormat compoundFormat = {
    .name = "Office 97",
    .masks = "doc,dot,xls,xlt,ppt,pps,pot",
    .asCopy = true,
    .recognises = isCompound,
    .read = readCompound,
};

}  // namespace kelvane
