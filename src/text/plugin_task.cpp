#include "text/plugin_task.h"

#include <utility>

#include "base/byte_stream.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

enum class Answered : std::uint32_t { done = 0, failed = 1 };

constexpr std::uint32_t mostTaskFields = 256;

constexpr auto lastKind = static_cast<std::uint32_t>(ErrorKind::io);

void writeText(ByteWriter& writer, std::string_view text)
{
    writer.number(static_cast<std::uint32_t>(text.size()));
    writer.text(text);
}

std::optional<std::string> readText(ByteReader& reader)
{
    const auto length = reader.number<std::uint32_t>();
    const auto bytes = length ? reader.bytes(*length) : std::nullopt;
    if (!bytes)
        return std::nullopt;
    return std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size());
}

std::optional<std::filesystem::path> readPath(ByteReader& reader)
{
    const auto text = readText(reader);
    return text ? std::optional<std::filesystem::path>(nativeFromBytes(*text)) : std::nullopt;
}

Error malformed()
{
    return {ErrorKind::invalid, 0, "malformed answer"};
}

std::vector<std::byte> failure(const Error& error)
{
    ByteWriter writer;
    writer.number(static_cast<std::uint32_t>(Answered::failed));
    writer.number(static_cast<std::uint32_t>(error.kind));
    writeText(writer, error.detail);
    return writer.take();
}

// What follows the word that all is well; the error that the other end met otherwise.
Result<ByteReader> opened(std::span<const std::byte> answer)
{
    ByteReader reader(answer);
    const auto answered = reader.number<std::uint32_t>();
    if (answered == static_cast<std::uint32_t>(Answered::done))
        return reader;
    const auto kind = reader.number<std::uint32_t>();
    auto detail = readText(reader);
    if (answered != static_cast<std::uint32_t>(Answered::failed) || !kind || *kind > lastKind || !detail)
        return malformed();
    return Error{static_cast<ErrorKind>(*kind), 0, *std::move(detail)};
}

std::vector<std::byte> documentAnswer(const ExtractedDocument& document)
{
    ByteWriter writer;
    writer.number(static_cast<std::uint32_t>(Answered::done));
    writer.bytes(encodeDocument(document));
    return writer.take();
}

std::vector<std::byte> descriptionAnswer(const PluginDescription& description)
{
    ByteWriter writer;
    writer.number(static_cast<std::uint32_t>(Answered::done));
    writeText(writer, description.detect);
    writer.number(static_cast<std::uint32_t>(description.fields.size()));
    for (const PluginField& field : description.fields) {
        writer.number(field.number);
        writer.number(static_cast<std::uint16_t>(field.type));
        writeText(writer, field.name);
    }
    return writer.take();
}

Result<ExtractedDocument> documentIn(std::span<const std::byte> answer)
{
    const auto reader = opened(answer);
    if (!reader)
        return reader.error();
    auto document = decodeDocument(answer.subspan(sizeof(std::uint32_t)));
    return document ? Result<ExtractedDocument>(*std::move(document)) : malformed();
}

}  // namespace

std::vector<std::byte> encodePluginRequest(const PluginRequest& request)
{
    ByteWriter writer;
    writer.number(static_cast<std::uint32_t>(WorkerTask::readPluginFields));
    writer.number(static_cast<std::uint32_t>(request.ask));
    writer.number(request.question.field);
    writer.number(request.characters);
    writeText(writer, bytesFromNative(request.question.path.native()));
    writeText(writer, bytesFromNative(request.question.file.native()));
    return writer.take();
}

std::optional<PluginRequest> decodePluginRequest(std::span<const std::byte> bytes)
{
    ByteReader reader(bytes);
    const auto task = reader.number<std::uint32_t>();
    const auto ask = reader.number<std::uint32_t>();
    const auto field = reader.number<std::uint32_t>();
    const auto characters = reader.number<std::uint32_t>();
    auto library = readPath(reader);
    auto file = readPath(reader);
    const bool known =
        task == static_cast<std::uint32_t>(WorkerTask::readPluginFields) && ask && *ask >= 1 && *ask <= 3;
    if (!known || !field || !characters || !library || !file || !reader.atEnd())
        return std::nullopt;
    return PluginRequest{static_cast<PluginAsk>(*ask), {*std::move(library), *std::move(file), *field}, *characters};
}

std::vector<std::byte> answerPluginRequest(std::span<const std::byte> request, PluginAccess& plugins)
{
    const CancelFlag never;  // who does not want to wait ends the worker
    const auto asked = decodePluginRequest(request);
    if (!asked)
        return {};
    if (asked->ask == PluginAsk::fullText)
        return documentAnswer(plugins.fullText(asked->question, asked->characters, never));
    if (asked->ask == PluginAsk::describe) {
        const auto description = plugins.describe(asked->question.path, never);
        return description ? descriptionAnswer(*description) : failure(description.error());
    }
    auto value = plugins.value(asked->question, never);
    if (!value)
        return failure(value.error());
    ExtractedDocument carrier;
    if (!value->empty())
        carrier.properties.push_back({{}, *std::move(value)});
    return documentAnswer(carrier);
}

Result<PluginDescription> decodePluginDescription(std::span<const std::byte> answer)
{
    auto reader = opened(answer);
    if (!reader)
        return reader.error();
    PluginDescription description;
    auto detect = readText(*reader);
    auto count = reader->number<std::uint32_t>();
    if (!detect || !count || *count > mostTaskFields)
        return malformed();
    description.detect = *std::move(detect);
    for (; *count > 0; --*count) {
        const auto number = reader->number<std::uint32_t>();
        const auto type = reader->number<std::uint16_t>();
        auto name = readText(*reader);
        if (!number || !type || !name)
            return malformed();
        description.fields.push_back({*number, *std::move(name), static_cast<VarType>(*type)});
    }
    return description;
}

Result<RawValue> decodePluginValue(std::span<const std::byte> answer)
{
    auto document = documentIn(answer);
    if (!document)
        return document.error();
    return document->properties.empty() ? RawValue{} : std::move(document->properties.front().value);
}

ExtractedDocument decodePluginText(std::span<const std::byte> answer)
{
    auto document = documentIn(answer);
    if (document)
        return *std::move(document);
    ExtractedDocument failed;
    failed.outcome = TextOutcome::crashed;
    failed.detail = document.error().detail;
    return failed;
}

}  // namespace kelvane
