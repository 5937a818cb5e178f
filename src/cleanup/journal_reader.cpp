#include "cleanup/journal_reader.h"

#include <algorithm>
#include <optional>

#include "base/byte_stream.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// The fields of one record; the first one that is missing or makes no sense spoils it.
class Fields {
public:
    explicit Fields(std::span<const std::byte> body) : reader_(body) {}

    [[nodiscard]] bool sound() const { return sound_; }

    template <std::unsigned_integral Number>
    Number number()
    {
        const auto value = reader_.number<Number>();
        sound_ = sound_ && value.has_value();
        return value.value_or(Number{0});
    }
    std::int64_t signedNumber() { return static_cast<std::int64_t>(number<std::uint64_t>()); }

    template <class Choice>
    Choice choice(Choice last)
    {
        const auto value = number<std::uint8_t>();
        sound_ = sound_ && value <= static_cast<std::uint8_t>(last);
        return sound_ ? static_cast<Choice>(value) : Choice{};
    }

    std::span<const std::byte> block()
    {
        const auto bytes = reader_.bytes(number<std::uint32_t>());
        sound_ = sound_ && bytes.has_value();
        return bytes.value_or(std::span<const std::byte>{});
    }
    std::string text()
    {
        const auto bytes = block();
        return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    NativeString name() { return nativeFromBytes(text()); }

    FileStamp stamp()
    {
        FileStamp stamp;
        stamp.identity.volume = number<std::uint64_t>();
        stamp.identity.index = number<std::uint64_t>();
        stamp.kind = choice(FileKind::other);
        stamp.size.bytes = number<std::uint64_t>();
        stamp.modified.ticks = signedNumber();
        return stamp;
    }

    FileMetadata metadata()
    {
        FileMetadata metadata;
        metadata.owner = number<std::uint32_t>();
        metadata.group = number<std::uint32_t>();
        metadata.permissions = number<std::uint32_t>();
        metadata.modified = signedNumber();
        metadata.accessed = signedNumber();
        for (auto left = number<std::uint32_t>(); left > 0 && sound_; --left) {
            std::string name = text();
            const auto value = block();
            metadata.attributes.emplace_back(std::move(name), std::vector<std::byte>(value.begin(), value.end()));
        }
        return metadata;
    }

private:
    ByteReader reader_;
    bool sound_ = true;
};

JournalIntent intentOf(Fields& fields)
{
    JournalIntent intent;
    intent.action = fields.choice(CleanupAction::link);
    intent.item = fields.name();
    intent.itemWas = fields.stamp();
    intent.kept = fields.name();
    intent.keptWas = fields.stamp();
    intent.temporary = fields.name();
    intent.metadata = fields.metadata();
    return intent;
}

// Applies one record after the other to the run.
class RunReader {
public:
    explicit RunReader(JournalRun& run) : run_(run) {}

    // False for a record that no writer writes here.
    [[nodiscard]] bool take(std::span<const std::byte> body)
    {
        Fields fields(body);
        switch (static_cast<RecordType>(fields.number<std::uint8_t>())) {
        case RecordType::intent:
            return intend(fields);
        case RecordType::placing:
            return place(fields);
        case RecordType::finish:
            return finish(fields);
        case RecordType::undoIntent:
            return intendUndo(fields);
        case RecordType::undoFinish:
            return finishUndo(fields);
        case RecordType::end:
            run_.ended = true;
            return true;
        case RecordType::repaired:
            run_.damaged = true;
            return true;
        }
        return fields.sound();  // a later version's
    }

private:
    bool intend(Fields& fields)
    {
        JournalEntry entry;
        entry.intent = intentOf(fields);
        if (!fields.sound())
            return false;
        run_.entries.push_back(std::move(entry));
        run_.ended = false;
        return true;
    }

    bool place(Fields& fields)
    {
        JournalEntry* entry = entryOf(fields);
        NativeString trashed = fields.name();
        if (entry == nullptr || !fields.sound() || entry->state != EntryState::intended)
            return false;
        entry->trashed = std::move(trashed);
        return true;
    }

    bool finish(Fields& fields)
    {
        JournalEntry* entry = entryOf(fields);
        const auto state = fields.choice(EntryState::notDone);
        const auto link = fields.choice(LinkKind::clone);
        NativeString trashed = fields.name();
        if (entry == nullptr || !fields.sound() || !mayFinish(entry->state, state))
            return false;
        entry->state = state;
        entry->link = link;
        if (!trashed.empty())
            entry->trashed = std::move(trashed);
        return true;
    }

    bool intendUndo(Fields& fields)
    {
        JournalEntry* entry = entryOf(fields);
        NativeString temporary = fields.name();
        if (entry == nullptr || !fields.sound() || !mayBecome(entry->state, EntryState::undoIntended))
            return false;
        entry->state = EntryState::undoIntended;
        entry->undoTemporary = std::move(temporary);
        run_.ended = false;
        return true;
    }

    bool finishUndo(Fields& fields)
    {
        JournalEntry* entry = entryOf(fields);
        const auto state = fields.choice(EntryState::undone);
        if (entry == nullptr || !fields.sound() || entry->state != EntryState::undoIntended ||
            !mayBecome(entry->state, state))
            return false;
        entry->state = state;
        return true;
    }

    JournalEntry* entryOf(Fields& fields)
    {
        const auto number = fields.number<std::uint32_t>();
        return fields.sound() && number < run_.entries.size() ? &run_.entries[number] : nullptr;
    }

    JournalRun& run_;
};

// Bytes of a file in pieces, so that a length that claims too much costs nothing.
class Source {
public:
    explicit Source(ContentReader& reader) : reader_(reader) {}

    // The next so many bytes, valid until the next call; fewer at the end of the file.
    Result<std::span<const std::byte>> next(std::size_t count)
    {
        if (buffer_.size() - at_ < count)
            dropGiven();
        while (buffer_.size() - at_ < count && !ended_) {
            if (const Status more = readMore(); !more)
                return more.error();
        }
        const auto given = std::span<const std::byte>(buffer_).subspan(at_, std::min(count, buffer_.size() - at_));
        at_ += given.size();
        return given;
    }

private:
    void dropGiven()
    {
        buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(at_));
        at_ = 0;
    }

    Status readMore()
    {
        constexpr std::size_t piece = 256 * 1024;
        const std::size_t before = buffer_.size();
        buffer_.resize(before + piece);
        const auto count = reader_.read(std::span(buffer_).subspan(before));
        if (!count)
            return count.error();
        buffer_.resize(before + *count);
        ended_ = *count < piece;
        return {};
    }

    ContentReader& reader_;
    std::vector<std::byte> buffer_;
    std::size_t at_ = 0;
    bool ended_ = false;
};

using Bytes = std::span<const std::byte>;

// False when it is not sound.
Result<bool> readHeader(Bytes bytes, JournalReading& reading)
{
    if (bytes.size() < journalHeaderLength)
        return false;
    ByteReader fields(bytes);
    const auto magic = fields.bytes(journalMagic.size());
    const auto version = fields.number<std::uint32_t>();
    const auto number = fields.number<std::uint32_t>();
    const auto action = fields.number<std::uint32_t>();
    const auto started = fields.number<std::uint64_t>();
    const auto checksum = fields.number<std::uint32_t>();
    if (!std::equal(magic->begin(), magic->end(), std::as_bytes(std::span(journalMagic)).begin()))
        return false;
    if (!reading.chain.acceptsHeader(bytes.first(journalHeaderLength - sizeof *checksum), *checksum))
        return false;
    if (*version != journalVersion)
        return Error{ErrorKind::notSupported, 0, "written by a later version"};
    if (*action > static_cast<std::uint32_t>(CleanupAction::link))
        return false;
    reading.run.number = static_cast<RunNumber>(*number);
    reading.run.action = static_cast<CleanupAction>(*action);
    reading.run.started.ticks = static_cast<std::int64_t>(*started);
    return true;
}

// Nothing at the end of the file and where it is not sound, which `cut` tells apart.
Result<std::optional<Bytes>> nextRecord(Source& source, JournalReading& reading)
{
    const auto head = source.next(2 * sizeof(std::uint32_t));
    if (!head)
        return head.error();
    reading.cut = !head->empty();
    ByteReader fields(*head);
    const auto length = fields.number<std::uint32_t>();
    const auto checksum = fields.number<std::uint32_t>();
    if (!checksum || *length == 0 || *length > mostRecordBytes)
        return std::optional<Bytes>();
    const auto body = source.next(*length);
    if (!body)
        return body.error();
    if (body->size() < *length || !reading.chain.accepts(*body, *checksum))
        return std::optional<Bytes>();
    reading.cut = false;
    return std::optional<Bytes>(*body);
}

}  // namespace

Result<JournalReading> readJournal(ContentReader& reader)
{
    Source source(reader);
    JournalReading reading;
    const auto header = source.next(journalHeaderLength);
    if (!header)
        return header.error();
    const auto soundHeader = readHeader(*header, reading);
    if (!soundHeader)
        return soundHeader.error();
    reading.cut = !*soundHeader;
    if (!reading.cut)
        reading.sound = journalHeaderLength;
    RunReader run(reading.run);
    while (!reading.cut) {
        RecordChain before = reading.chain;
        const auto record = nextRecord(source, reading);
        if (!record)
            return record.error();
        if (!record->has_value())
            break;
        if (!run.take(**record)) {
            reading.chain = before;
            reading.cut = true;
            break;
        }
        reading.sound += 2 * sizeof(std::uint32_t) + (*record)->size();
    }
    reading.run.damaged = reading.run.damaged || reading.cut;
    return reading;
}

bool mayFinish(EntryState from, EntryState to)
{
    return from != EntryState::undoIntended && to != EntryState::undoIntended && mayBecome(from, to);
}

bool mayBecome(EntryState from, EntryState to)
{
    switch (to) {
    case EntryState::intended:
        return false;
    case EntryState::notDone:
        return from == EntryState::intended || from == EntryState::done;
    case EntryState::done:
        return from == EntryState::intended || from == EntryState::undoIntended;
    case EntryState::undoIntended:
        return from == EntryState::done;
    case EntryState::undone:
        return from == EntryState::undoIntended;
    }
    return false;
}

}  // namespace kelvane
