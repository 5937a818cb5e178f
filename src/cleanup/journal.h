// The journal of clean-ups: what each run is about to do, written ahead, and what became of it. One file a run.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "cleanup/cleanup_plan.h"
#include "platform/file_output.h"
#include "platform/file_system.h"
#include "platform/held_files.h"

namespace kelvane {

enum class RunNumber : std::uint32_t {};    // from 1, in the order of the runs
enum class EntryNumber : std::uint32_t {};  // from 0 within a run

// What a file was when it was last looked at through an open handle.
struct FileStamp {
    FileIdentity identity;
    FileKind kind = FileKind::regular;
    FileSize size;
    FileTime modified;
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

[[nodiscard]] FileStamp stampOf(const FileInfo& info);

// What is about to happen to one item.
struct JournalIntent {
    CleanupAction action = CleanupAction::recycle;
    std::filesystem::path item;
    FileStamp itemWas;
    std::filesystem::path kept;
    FileStamp keptWas;
    // Of links: the name beside the item under which the replacement is made and the old file leaves; where a file
    // system cannot exchange names the old file leaves under asideName(temporary).
    NativeString temporary;
    FileMetadata metadata;  // of the item, for links only: what a link cannot keep
    friend bool operator==(const JournalIntent&, const JournalIntent&) = default;
};

[[nodiscard]] NativeString asideName(const NativeString& temporary);

enum class EntryState : std::uint8_t {
    intended,  // may or may not have happened
    done,
    notDone,       // failed, or was taken back at once
    undoIntended,  // is being taken back: may or may not have happened
    undone,
};

struct JournalEntry {
    JournalIntent intent;
    EntryState state = EntryState::intended;
    LinkKind link = LinkKind::none;  // what a replacement became
    std::filesystem::path trashed;   // where the item is in the trash; known from the moment before it goes there
    NativeString undoTemporary;      // the name beside the item under which taking back makes the copy
    friend bool operator==(const JournalEntry&, const JournalEntry&) = default;
};

struct JournalRun {
    RunNumber number{};
    CleanupAction action = CleanupAction::recycle;
    FileTime started;
    bool ended = false;    // the run came to its end; entries may be undecided nevertheless when it did not
    bool damaged = false;  // cut off or altered: `entries` has what comes before the damage
    std::vector<JournalEntry> entries;
};

// Appends to the file of one run. Every call but flush() only hands bytes to the system, which a crash of this process
// does not lose; flush() returns when the device has them, which a loss of power does not undo. A result that is lost
// with the power is found again by settling. After a failure nothing more is written (the same error again); only what
// makes no sense (`invalid`: a result for an entry that is decided) is refused by itself. The run's file is locked as
// long as this lives: nobody else settles or takes back. One thread; the ports outlive it.
class JournalWriter {
public:
    virtual ~JournalWriter() = default;
    [[nodiscard]] virtual RunNumber number() const = 0;
    // `notSupported` when there is too much to write down (names and attributes of above 16 MiB); nothing else is lost.
    [[nodiscard]] virtual Result<EntryNumber> intend(const JournalIntent& intent) = 0;
    [[nodiscard]] virtual Status placing(EntryNumber entry, const std::filesystem::path& trashed) = 0;
    // `state` is done or notDone; notDone also after done, when a loss of power took back what had been done. The path
    // is where the item is in the trash; empty: where placing() said.
    [[nodiscard]] virtual Status finish(EntryNumber entry, EntryState state, LinkKind link = LinkKind::none,
                                        const std::filesystem::path& trashed = {}) = 0;
    [[nodiscard]] virtual Status intendUndo(EntryNumber entry, const NativeString& temporary) = 0;
    // `state` is undone, or done when it was not taken back.
    [[nodiscard]] virtual Status finishUndo(EntryNumber entry, EntryState state) = 0;
    [[nodiscard]] virtual Status flush() = 0;
    // The run is over; flushed. While an entry is undecided the run stays an unfinished one, for settling. Taking back
    // may go on behind it, and ends it again.
    [[nodiscard]] virtual Status end() = 0;
};

// The folder of all journals; made when the first run begins. Thread-safe; the ports outlive it.
class Journals {
public:
    Journals(FileSystem& files, FileOutput& output, std::filesystem::path folder);

    // To be held during a clean-up: two at once could each take away the copy that the other one keeps. `tooManyOpen`
    // while another process has it; of one person, since journals are.
    [[nodiscard]] Result<std::unique_ptr<FileLock>> claim();

    // Gives the run the next free number. Forgets the oldest runs that came to their end beyond the last 100.
    [[nodiscard]] Result<std::unique_ptr<JournalWriter>> begin(CleanupAction action, FileTime now);
    // For taking back and settling: the run as it stands, locked against others, and the way to write on.
    // `tooManyOpen` while another process works on it, `notFound` for an unknown number.
    struct Opened {
        JournalRun run;
        std::unique_ptr<JournalWriter> writer;
    };
    [[nodiscard]] Result<Opened> reopen(RunNumber number);

    [[nodiscard]] Result<JournalRun> read(RunNumber number);
    // Rising; empty when there is no folder. Cheap: names only.
    [[nodiscard]] Result<std::vector<RunNumber>> list();
    // Runs that did not come to their end, those that are going on included; cheap as well.
    [[nodiscard]] Result<std::vector<RunNumber>> unfinished();

    // Removes the oldest runs that came to their end until so many are left, but none that somebody works on.
    [[nodiscard]] Status prune(std::size_t keep);

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

private:
    FileSystem& files_;
    FileOutput& output_;
    std::filesystem::path folder_;
};

// Where a person's journals lie: below what the program remembers of its own work.
[[nodiscard]] std::filesystem::path journalFolder(const std::filesystem::path& stateFolder);

}  // namespace kelvane
