// The names that a clean-up may have used for one item, and what is under them now.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "cleanup/settle_steps.h"

namespace kelvane {

// Whether it is the file that was seen. Volumes may have other numbers after a restart; then size and time have to be
// the same as well. The names and contents decide what is done, this only which case it is.
[[nodiscard]] bool isThatFile(const FileInfo& now, const FileStamp& was);

// Whether the folder of an item is not there although its volume is: then the folder went, and with it all in it.
[[nodiscard]] bool folderIsGone(const std::filesystem::path& item, const FileStamp& was, FileSystem& files);

enum class Found : std::uint8_t {
    nothing,
    old,           // the item as it was before
    hardLink,      // a name of the kept file
    symbolicLink,  // leads to the kept file
    other,
};

[[nodiscard]] inline bool isLink(Found found)
{
    return found == Found::hardLink || found == Found::symbolicLink;
}

// The folder of an item, held. One thread; entry and ports outlive it.
class EntryPlace {
public:
    EntryPlace(const JournalEntry& entry, const PassPorts& ports);

    [[nodiscard]] Status open();
    [[nodiscard]] HeldFolder& folder() { return *folder_; }
    [[nodiscard]] const NativeString& name() const { return name_; }
    [[nodiscard]] std::filesystem::path pathOf(const NativeString& name) const;

    [[nodiscard]] Result<Found> at(const NativeString& name) const;

    // The file whose bytes are shown under this name: its own, or the kept one behind a symbolic link.
    [[nodiscard]] Result<std::unique_ptr<HeldFile>> contentOf(const NativeString& name);
    [[nodiscard]] Result<std::unique_ptr<HeldFile>> openKept() const;
    // Byte by byte; false also where one of them is no file or is being written.
    [[nodiscard]] Result<bool> sameContent(const NativeString& a, const NativeString& b);
    // Whether the file has another name somewhere than this one.
    [[nodiscard]] Result<bool> hasAnotherName(const NativeString& name) const;

    // Takes a name away of which somebody made sure that it is not the only one of its content.
    [[nodiscard]] Status drop(const NativeString& name);

    // Nothing is decided as long as this lies there.
    [[nodiscard]] Verdict undecided(CleanupFault fault, const Error& error, const NativeString& left = {}) const;
    // Decided, but somebody should know.
    [[nodiscard]] Verdict decidedBut(EntryState state, CleanupFault fault, const NativeString& left = {}) const;

private:
    [[nodiscard]] bool leadsToKept(const NativeString& name) const;

    const JournalEntry& entry_;
    const PassPorts& ports_;
    NativeString name_;
    std::unique_ptr<HeldFolder> folder_;
};

}  // namespace kelvane
