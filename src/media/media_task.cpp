#include "media/media_task.h"

#include "base/byte_stream.h"
#include "text/worker_values.h"

namespace kelvane {
namespace {

constexpr std::uint32_t decodeTask = 1;       // the one thing that such a worker does
constexpr std::size_t longestWord = 1000;     // of what is told to a person: many files' are kept at once
constexpr std::uint32_t mostFrames = 10'000;  // of a fingerprint: far more than the longest opening has

template <class Enumeration>
std::optional<Enumeration> readChoice(ByteReader& in, Enumeration last)
{
    const auto number = in.number<std::uint8_t>();
    return number && *number <= static_cast<std::uint8_t>(last) ? std::optional(static_cast<Enumeration>(*number))
                                                                : std::nullopt;
}

void writeFlag(ByteWriter& out, bool flag)
{
    out.number(static_cast<std::uint8_t>(flag));
}

void writeBlock(ByteWriter& out, std::span<const std::byte> block)
{
    out.number(static_cast<std::uint32_t>(block.size()));
    out.bytes(block);
}

std::optional<std::span<const std::byte>> readBlock(ByteReader& in)
{
    const auto size = in.number<std::uint32_t>();
    return size ? in.bytes(*size) : std::nullopt;
}

void writeWish(ByteWriter& out, const MediaWish& wish)
{
    writeFlag(out, wish.facts);
    writeFlag(out, wish.fingerprint);
    writeFlag(out, wish.preview);
    out.number(static_cast<std::uint8_t>(wish.previewOf));
}

std::optional<MediaWish> readWish(ByteReader& in)
{
    const auto facts = readFlag(in);
    const auto fingerprint = readFlag(in);
    const auto preview = readFlag(in);
    const auto kind = readChoice(in, MediaKind::picture);
    if (!facts || !fingerprint || !preview || !kind)
        return std::nullopt;
    return MediaWish{*facts, *fingerprint, *preview, *kind};
}

std::optional<MediaFault> readFault(ByteReader& in)
{
    const auto outcome = readChoice(in, MediaOutcome::cancelled);
    auto codec = outcome ? readBytes(in) : std::nullopt;
    auto detail = codec ? readBytes(in) : std::nullopt;
    if (!detail || codec->size() > longestWord || detail->size() > longestWord)
        return std::nullopt;
    return MediaFault{*outcome, std::move(*codec), std::move(*detail)};
}

// False for malformed bytes; an object that is not there is none.
bool readFingerprint(ByteReader& in, Ref<MP3Finger>& fingerprint)
{
    const auto frames = in.number<std::uint32_t>();
    if (!frames || *frames > mostFrames)
        return false;
    if (*frames == 0)
        return true;
    const auto block = readBlock(in);
    if (block)
        fingerprint = MP3Finger::unpacked(*block, *frames);
    return fingerprint != nullptr;
}

bool readPreview(ByteReader& in, Ref<CachedBitmap>& preview)
{
    const auto there = readFlag(in);
    if (!there || !*there)
        return there.has_value();
    const auto block = readBlock(in);
    if (block)
        preview = CachedBitmap::unpacked(*block);
    return preview != nullptr;
}

}  // namespace

std::vector<std::byte> encodeRequest(const MediaRequest& request)
{
    ByteWriter out;
    out.number(decodeTask);
    writeBytes(out, request.fileName);
    writeWish(out, request.wish);
    out.number(static_cast<std::uint64_t>(request.songStartMs));
    return out.take();
}

std::optional<MediaRequest> decodeMediaRequest(std::span<const std::byte> bytes)
{
    ByteReader in(bytes);
    if (in.number<std::uint32_t>() != decodeTask)
        return std::nullopt;
    auto name = readBytes(in);
    const auto wish = name ? readWish(in) : std::nullopt;
    const auto start = in.number<std::uint64_t>();
    if (!wish || !start || !in.atEnd())
        return std::nullopt;
    return MediaRequest{std::move(*name), *wish, static_cast<std::int64_t>(*start)};
}

std::vector<std::byte> encodeAnswer(const MediaAnswer& answer)
{
    ByteWriter out;
    out.number(static_cast<std::uint8_t>(answer.fault.outcome));
    writeBytes(out, std::string_view(answer.fault.codec).substr(0, longestWord));
    writeBytes(out, std::string_view(answer.fault.detail).substr(0, longestWord));
    writeNamedValues(out, answer.facts);
    out.number(static_cast<std::uint32_t>(answer.fingerprint ? answer.fingerprint->frames() : 0));
    if (answer.fingerprint)
        writeBlock(out, answer.fingerprint->packed());
    writeFlag(out, answer.preview != nullptr);
    if (answer.preview)
        writeBlock(out, answer.preview->packed());
    return out.take();
}

std::optional<MediaAnswer> decodeMediaAnswer(std::span<const std::byte> bytes)
{
    ByteReader in(bytes);
    auto fault = readFault(in);
    auto facts = fault ? readNamedValues(in) : std::nullopt;
    if (!facts)
        return std::nullopt;
    MediaAnswer answer{std::move(*fault), std::move(*facts), nullptr, nullptr};
    if (!readFingerprint(in, answer.fingerprint) || !readPreview(in, answer.preview) || !in.atEnd())
        return std::nullopt;
    return answer;
}

}  // namespace kelvane
