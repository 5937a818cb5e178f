// Port: taking files and folders away, into the trash or for good, and bringing them back from the trash.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

#include "base/cancel.h"
#include "base/result.h"
#include "platform/file_info.h"

namespace kelvane {

enum class Removal : std::uint8_t { toTrash, forGood };

// One file, link or folder to be taken away. `identity` is that of the name itself, links not followed: what has
// another one is left alone (`changed`).
struct RemovalItem {
    std::filesystem::path path;
    FileIdentity identity;
    Removal removal = Removal::toTrash;
};

// What became of one item. `code` has the form of an HRESULT: negative for a failure; codes of other systems stand in
// the low 16 bits behind 0x8007.
struct RemovalOutcome {
    std::int32_t code = 0;
    std::optional<Error> error;                    // of a failure, with the system's text
    std::optional<std::filesystem::path> trashed;  // where it is now; nothing for what is gone for good
};

namespace removal_code {
inline constexpr std::int32_t done = 0;
// These two tell of a step of the shell's own and not of an item.
inline constexpr std::int32_t ignoredA = 0x0027000B;
inline constexpr std::int32_t ignoredB = static_cast<std::int32_t>(0x80270002);
inline constexpr std::int32_t skippedByPerson = 0x00270005;
}  // namespace removal_code

// Hears of each item, in their order, on the caller's thread.
class RemovalSink {
public:
    virtual ~RemovalSink() = default;
    // Right before the item's turn; false leaves it alone, and after() is not called for it.
    [[nodiscard]] virtual bool before(std::size_t item) = 0;
    // The name that the item is about to get in the trash, where it is known ahead; an error leaves the item alone and
    // is its outcome.
    [[nodiscard]] virtual Status placing(std::size_t item, const std::filesystem::path& trashed) = 0;
    virtual void after(std::size_t item, const RemovalOutcome& outcome) = 0;
};

struct BatchOutcome {
    bool ok = true;        // the batch as a whole; items may have failed all the same
    bool aborted = false;  // not every item had its turn
};

// Thread-safe; paths are absolute.
class FileOperations {
public:
    virtual ~FileOperations() = default;

    // One item after the other, until `cancel` is set. An item that has to go to the trash and cannot stays where it
    // is. A folder goes into the trash with all that is in it, and for good only when it is empty.
    [[nodiscard]] virtual BatchOutcome remove(std::span<const RemovalItem> items, RemovalSink& sink,
                                              const CancelFlag& cancel) = 0;

    // Whether what lies at this path could go to a trash; notSupported with the reason when its volume has none.
    [[nodiscard]] virtual Status canTrash(const std::filesystem::path& path) = 0;
    // Whether the path leads into some trash, links on the way looked through.
    [[nodiscard]] virtual bool isInTrash(const std::filesystem::path& path) = 0;

    // Back from the trash to where it was, with what the trash knew of it; `exists` when the place is taken, `notFound`
    // when the trash has it no more. A missing folder on the way is not made. Never replaces anything.
    [[nodiscard]] virtual Status restore(const std::filesystem::path& trashed, const std::filesystem::path& place) = 0;
    // Clears what placing() may have left when nothing was moved (the trash's note of an item that is not there).
    // Success when there is nothing to clear; does nothing where the item is there.
    [[nodiscard]] virtual Status forget(const std::filesystem::path& trashed) = 0;
};

}  // namespace kelvane
