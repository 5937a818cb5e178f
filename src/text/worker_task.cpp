#include "text/worker_task.h"

#include "base/byte_stream.h"
#include "text/worker_values.h"

namespace kelvane {
namespace {

constexpr std::size_t longestWord = 1000;  // of what is told to a person: many documents' are kept at once

std::optional<TextOutcome> readOutcome(ByteReader& in)
{
    const auto number = in.number<std::uint8_t>();
    if (!number || *number > static_cast<std::uint8_t>(TextOutcome::cancelled))
        return std::nullopt;
    return static_cast<TextOutcome>(*number);
}

}  // namespace

std::optional<WorkerTask> taskOf(std::span<const std::byte> request)
{
    const auto number = ByteReader(request).number<std::uint32_t>();
    return number ? std::optional(static_cast<WorkerTask>(*number)) : std::nullopt;
}

std::vector<std::byte> encodeRequest(const ExtractionRequest& request)
{
    ByteWriter out;
    out.number(static_cast<std::uint32_t>(WorkerTask::extractDocument));
    writeBytes(out, request.fileName);
    out.number(request.textSample);
    out.number(request.largestStream);
    return out.take();
}

std::optional<ExtractionRequest> decodeExtractionRequest(std::span<const std::byte> bytes)
{
    ByteReader in(bytes);
    const auto task = in.number<std::uint32_t>();
    if (task != static_cast<std::uint32_t>(WorkerTask::extractDocument))
        return std::nullopt;
    auto name = readBytes(in);
    const auto sample = in.number<std::uint32_t>();
    const auto stream = in.number<std::uint64_t>();
    if (!name || !sample || !stream || !in.atEnd())
        return std::nullopt;
    return ExtractionRequest{std::move(*name), *sample, *stream};
}

std::vector<std::byte> encodeDocument(const ExtractedDocument& document)
{
    ByteWriter out;
    out.number(static_cast<std::uint8_t>(document.outcome));
    out.number(static_cast<std::uint8_t>(document.cut));
    out.number(static_cast<std::uint8_t>(document.plain));
    out.number(document.weight);
    writeUnits(out, document.text);
    writeBytes(out, document.missingTool.substr(0, longestWord));
    writeBytes(out, document.detail.substr(0, longestWord));
    writeNamedValues(out, document.properties);
    return out.take();
}

std::optional<ExtractedDocument> decodeDocument(std::span<const std::byte> bytes)
{
    ByteReader in(bytes);
    const auto outcome = readOutcome(in);
    const auto cut = readFlag(in);
    const auto plain = readFlag(in);
    const auto weight = in.number<std::uint64_t>();
    auto text = readUnits(in);
    auto tool = readBytes(in);
    auto detail = readBytes(in);
    if (!outcome || !cut || !plain || !weight || !text || !tool || tool->size() > longestWord || !detail ||
        detail->size() > longestWord)
        return std::nullopt;
    auto properties = readNamedValues(in);
    if (!properties || !in.atEnd())
        return std::nullopt;
    return ExtractedDocument{*outcome,         std::move(*text),  *cut, *plain, *weight, std::move(*properties),
                             std::move(*tool), std::move(*detail)};
}

TextOutcome outcomeOf(WorkerEnd end)
{
    switch (end) {
    case WorkerEnd::notOpened:
        return TextOutcome::unreadable;
    case WorkerEnd::timedOut:
        return TextOutcome::timedOut;
    case WorkerEnd::tooMuchMemory:
        return TextOutcome::tooMuchMemory;
    case WorkerEnd::cancelled:
        return TextOutcome::cancelled;
    case WorkerEnd::answered:
    case WorkerEnd::died:
        break;
    }
    return TextOutcome::crashed;
}

}  // namespace kelvane
