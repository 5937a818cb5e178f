// Where the file of a run lies, and who writes it.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "cleanup/journal_reader.h"
#include "platform/file_output.h"
#include "platform/file_system.h"

namespace kelvane {

// The file of a run has one name while something may be undecided in it and another one afterwards, so that names
// alone tell which runs to look at.
class JournalFile {
public:
    JournalFile(const std::filesystem::path& folder, RunNumber number);

    [[nodiscard]] const std::filesystem::path& open() const { return open_; }  // "7.kvrun.open"
    [[nodiscard]] const std::filesystem::path& ended() const
    {
        return ended_;
    }  // "7.kvrun", which the lock goes by too
    [[nodiscard]] std::filesystem::path folder() const { return ended_.parent_path(); }

private:
    std::filesystem::path ended_;
    std::filesystem::path open_;
};

struct JournalName {
    RunNumber number{};
    bool ended = false;
};

// Nothing for other files that lie there: locks and temporary ones.
[[nodiscard]] std::optional<JournalName> journalNameOf(NativeView name);

// What the file of a run says now, and under which of its names it was found.
struct FoundJournal {
    JournalReading reading;
    bool ended = false;
};
[[nodiscard]] Result<FoundJournal> findJournal(FileSystem& files, const JournalFile& file, RunNumber number);

struct JournalPorts {
    FileSystem& files;
    FileOutput& output;
};

// A new file with its header, on the device when this returns. `exists` when the number is taken.
[[nodiscard]] Result<std::unique_ptr<JournalWriter>> beginJournal(const JournalPorts& ports, JournalFile file,
                                                                  std::unique_ptr<FileLock> lock, RunNumber number,
                                                                  CleanupAction action, FileTime now);
// Goes on behind what was read. Nothing on the disk changes before the first call that writes.
[[nodiscard]] std::unique_ptr<JournalWriter> continueJournal(const JournalPorts& ports, JournalFile file,
                                                             std::unique_ptr<FileLock> lock, const FoundJournal& found);

}  // namespace kelvane
