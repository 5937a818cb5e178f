#include "cleanup/journal_records.h"

#include "base/byte_stream.h"
#include "base/crc32.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

void writeText(ByteWriter& writer, std::string_view bytes)
{
    writer.number(static_cast<std::uint32_t>(bytes.size()));
    writer.text(bytes);
}

void writeName(ByteWriter& writer, const NativeString& name)
{
    writeText(writer, nameBytes(NativeView(name)));
}

void writeStamp(ByteWriter& writer, const FileStamp& stamp)
{
    writer.number(stamp.identity.volume);
    writer.number(stamp.identity.index);
    writer.number(static_cast<std::uint8_t>(stamp.kind));
    writer.number(stamp.size.bytes);
    writer.number(static_cast<std::uint64_t>(stamp.modified.ticks));
}

void writeMetadata(ByteWriter& writer, const FileMetadata& metadata)
{
    writer.number(metadata.owner);
    writer.number(metadata.group);
    writer.number(metadata.permissions);
    writer.number(static_cast<std::uint64_t>(metadata.modified));
    writer.number(static_cast<std::uint64_t>(metadata.accessed));
    writer.number(static_cast<std::uint32_t>(metadata.attributes.size()));
    for (const auto& [name, value] : metadata.attributes) {
        writeText(writer, name);
        writer.number(static_cast<std::uint32_t>(value.size()));
        writer.bytes(value);
    }
}

ByteWriter begun(RecordType type)
{
    ByteWriter writer;
    writer.number(static_cast<std::uint8_t>(type));
    return writer;
}

ByteWriter begun(RecordType type, EntryNumber entry)
{
    ByteWriter writer = begun(type);
    writer.number(static_cast<std::uint32_t>(entry));
    return writer;
}

std::uint32_t chained(std::uint32_t previous, std::span<const std::byte> bytes)
{
    ByteWriter writer;
    writer.number(previous);
    writer.bytes(bytes);
    return crc32(writer.written());
}

}  // namespace

RecordBody intentBody(const JournalIntent& intent)
{
    ByteWriter writer = begun(RecordType::intent);
    writer.number(static_cast<std::uint8_t>(intent.action));
    writeName(writer, intent.item.native());
    writeStamp(writer, intent.itemWas);
    writeName(writer, intent.kept.native());
    writeStamp(writer, intent.keptWas);
    writeName(writer, intent.temporary);
    writeMetadata(writer, intent.metadata);
    return writer.take();
}

RecordBody placingBody(EntryNumber entry, const std::filesystem::path& trashed)
{
    ByteWriter writer = begun(RecordType::placing, entry);
    writeName(writer, trashed.native());
    return writer.take();
}

RecordBody finishBody(EntryNumber entry, EntryState state, LinkKind link, const std::filesystem::path& trashed)
{
    ByteWriter writer = begun(RecordType::finish, entry);
    writer.number(static_cast<std::uint8_t>(state));
    writer.number(static_cast<std::uint8_t>(link));
    writeName(writer, trashed.native());
    return writer.take();
}

RecordBody undoIntentBody(EntryNumber entry, const NativeString& temporary)
{
    ByteWriter writer = begun(RecordType::undoIntent, entry);
    writeName(writer, temporary);
    return writer.take();
}

RecordBody undoFinishBody(EntryNumber entry, EntryState state)
{
    ByteWriter writer = begun(RecordType::undoFinish, entry);
    writer.number(static_cast<std::uint8_t>(state));
    return writer.take();
}

RecordBody plainBody(RecordType type)
{
    return begun(type).take();
}

std::vector<std::byte> RecordChain::header(RunNumber number, CleanupAction action, FileTime started)
{
    ByteWriter writer;
    writer.text(journalMagic);
    writer.number(journalVersion);
    writer.number(static_cast<std::uint32_t>(number));
    writer.number(static_cast<std::uint32_t>(action));
    writer.number(static_cast<std::uint64_t>(started.ticks));
    checksum_ = crc32(writer.written());
    writer.number(checksum_);
    return writer.take();
}

std::vector<std::byte> RecordChain::record(const RecordBody& body)
{
    checksum_ = chained(checksum_, body);
    ByteWriter writer;
    writer.number(static_cast<std::uint32_t>(body.size()));
    writer.number(checksum_);
    writer.bytes(body);
    return writer.take();
}

bool RecordChain::acceptsHeader(std::span<const std::byte> fields, std::uint32_t checksum)
{
    checksum_ = crc32(fields);
    return checksum_ == checksum;
}

bool RecordChain::accepts(std::span<const std::byte> body, std::uint32_t checksum)
{
    if (chained(checksum_, body) != checksum)
        return false;
    checksum_ = checksum;
    return true;
}

}  // namespace kelvane
