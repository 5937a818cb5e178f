#include "text/document_extractor.h"

#include <algorithm>

#include "text/format_registry.h"
#include "text/stream_reading.h"

namespace kelvane {
namespace {

constexpr std::uint64_t headLength = 4096;

ExtractedDocument without(ReadOutcome outcome)
{
    ExtractedDocument document;
    document.outcome = outcome.outcome;
    document.detail = std::move(outcome.detail);
    return document;
}

}  // namespace

ExtractedDocument extractDocument(RandomAccessFile& file, std::string_view fileName, const DocumentServices& services)
{
    const auto head = readBeginning(file, headLength);
    if (!head)
        return without(unreadable(head.error()));
    const DocumentFormat* format = formatOf(fileName, *head);
    if (format == nullptr)
        return {};
    DocumentSink sink(services.options);
    ReadOutcome outcome = format->read(file, services, sink);
    ExtractedDocument document = std::move(sink).take();
    document.outcome = outcome.outcome;
    document.detail = std::move(outcome.detail);
    document.missingTool = std::move(outcome.missingTool);
    document.plain = format->plain && !outcome.reencoded;
    return document;
}

}  // namespace kelvane
