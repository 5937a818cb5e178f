#include "text/format_rtf.h"

#include <algorithm>

#include "text/rtf_reader.h"
#include "text/stream_reading.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

constexpr std::string_view beginning = "{\\rtf";

std::string_view withoutLeadingSpace(std::string_view bytes)
{
    if (markedCharset(asBytes(bytes)) == "utf-8")
        bytes.remove_prefix(3);
    bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
    return bytes;
}

bool recognisesRtf(std::span<const std::byte> head)
{
    return withoutLeadingSpace(asCharacters(head)).starts_with(beginning);
}

ReadOutcome readRtf(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    const auto bytes = readBeginning(file, services.options.largestStream);
    if (!bytes)
        return unreadable(bytes.error());
    const std::string_view document = withoutLeadingSpace(asCharacters(*bytes));
    if (!document.starts_with(beginning))
        return {TextOutcome::damaged, {}, {}};
    putRtf(document, services.decoding, sink);
    if (bytes->size() < file.size())
        sink.leavesMore();
    return {};
}

}  // namespace

const DocumentFormat rtfFormat = {.name = "RTF", .masks = "rtf", .recognises = recognisesRtf, .read = readRtf};

}  // namespace kelvane
