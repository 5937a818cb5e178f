// The parts of a clean-up's journal as bytes (docs/formats/cleanup-journal.md).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "cleanup/journal.h"

namespace kelvane {

inline constexpr std::string_view journalMagic = "KVCJ";
inline constexpr std::uint32_t journalVersion = 1;
inline constexpr std::size_t journalHeaderLength = 28;
// Of the type and what follows it: far above what paths and attributes take, so that a length that claims more is
// damage and costs nothing.
inline constexpr std::size_t mostRecordBytes = 16 * 1024 * 1024;

enum class RecordType : std::uint8_t { intent = 1, placing, finish, undoIntent, undoFinish, end, repaired };

// What a record holds, its type first.
using RecordBody = std::vector<std::byte>;

[[nodiscard]] RecordBody intentBody(const JournalIntent& intent);
[[nodiscard]] RecordBody placingBody(EntryNumber entry, const std::filesystem::path& trashed);
[[nodiscard]] RecordBody finishBody(EntryNumber entry, EntryState state, LinkKind link,
                                    const std::filesystem::path& trashed);
[[nodiscard]] RecordBody undoIntentBody(EntryNumber entry, const NativeString& temporary);
[[nodiscard]] RecordBody undoFinishBody(EntryNumber entry, EntryState state);
[[nodiscard]] RecordBody plainBody(RecordType type);  // of end and repaired

// Makes the bytes of a file, part by part. Each checksum covers the one before it, so that a part counts only where it
// was written: not behind another one, and not as what a file that had the place before left on the disk.
class RecordChain {
public:
    RecordChain() = default;
    explicit RecordChain(std::uint32_t checksum) : checksum_(checksum) {}

    [[nodiscard]] std::vector<std::byte> header(RunNumber number, CleanupAction action, FileTime started);
    [[nodiscard]] std::vector<std::byte> record(const RecordBody& body);
    // Likewise for the first 24 bytes of a header, when reading.
    [[nodiscard]] bool acceptsHeader(std::span<const std::byte> fields, std::uint32_t checksum);
    // Whether a record with this checksum continues the chain; it does so from here on when it does.
    [[nodiscard]] bool accepts(std::span<const std::byte> body, std::uint32_t checksum);

    [[nodiscard]] std::uint32_t checksum() const { return checksum_; }

private:
    std::uint32_t checksum_ = 0;
};

}  // namespace kelvane
