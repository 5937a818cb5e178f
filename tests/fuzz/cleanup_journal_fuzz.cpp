// Whatever the reader of journals makes of a file: the sound part alone says the same, and each intent in it is written
// and read again as it is.
#include <algorithm>
#include <vector>

#include "../support/bytes_reader.h"
#include "base/byte_stream.h"
#include "cleanup/journal_reader.h"
#include "require.h"

namespace kelvane {
namespace {

using Bytes = std::vector<std::byte>;

Result<JournalReading> readBytes(Bytes bytes)
{
    testing::BytesReader reader(std::move(bytes));
    return readJournal(reader);
}

void checkIntent(const JournalIntent& intent)
{
    RecordChain chain;
    Bytes bytes = chain.header(RunNumber{1}, intent.action, {});
    const Bytes record = chain.record(intentBody(intent));
    bytes.insert(bytes.end(), record.begin(), record.end());
    const auto again = readBytes(std::move(bytes));
    require(again.ok() && again->run.entries.size() == 1 && again->run.entries[0].intent == intent);
}

void check(const Bytes& bytes)
{
    const auto reading = readBytes(bytes);
    if (!reading)
        return;
    require(reading->sound <= bytes.size() && (reading->cut || reading->sound == bytes.size()));
    for (const JournalEntry& entry : reading->run.entries)
        checkIntent(entry.intent);
    if (reading->sound == 0)
        return;
    const auto again = readBytes({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(reading->sound)});
    require(again.ok() && !again->cut && again->run.entries == reading->run.entries);
    require(again->run.ended == reading->run.ended && again->chain.checksum() == reading->chain.checksum());
}

// The same records with the checksums that they should have, behind a sound header.
Bytes resealed(const Bytes& bytes)
{
    RecordChain chain;
    Bytes sealed = chain.header(RunNumber{1}, CleanupAction::link, {});
    ByteReader reader(std::span<const std::byte>(bytes).subspan(std::min(bytes.size(), journalHeaderLength)));
    while (const auto length = reader.number<std::uint32_t>()) {
        const auto checksum = reader.number<std::uint32_t>();
        const auto body = checksum ? reader.bytes(*length) : std::nullopt;
        if (!body)
            break;
        const Bytes record = chain.record({body->begin(), body->end()});
        sealed.insert(sealed.end(), record.begin(), record.end());
    }
    return sealed;
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto* first = reinterpret_cast<const std::byte*>(data);
    const std::vector<std::byte> bytes(first, first + size);
    kelvane::check(bytes);
    kelvane::check(kelvane::resealed(bytes));
    return 0;
}
