// Shell items: the files and folders that a scan works on, those in archives included.
#pragma once

#include <atomic>
#include <cstdint>

#include "base/ref.h"
#include "platform/file_info.h"

namespace kelvane {

// One file or folder, reference-counted and immutable but for the cached hidden-or-system test. It keeps its parent
// alive and shares it with its siblings, so that an item costs one allocation of about 64 bytes and its name.
// The name is stored byte for byte; the full path is put together from the chain of parents.
class ShellItem final : public RefCounted<ShellItem> {
public:
    enum class Place : std::uint8_t {
        fileSystem,     // a file or folder with a path of its own
        archive,        // an archive file on the file system, seen as a folder
        insideArchive,  // an entry of an archive; info().identity.index holds its ordinal, the volume is 0
    };

    // A root has no parent and its full path as name. Never null; running out of memory throws std::bad_alloc.
    [[nodiscard]] static Ref<ShellItem> make(Ref<const ShellItem> parent, NativeView name, const FileInfo& info,
                                             Place place);
    // Ends the item, and those of its parents that nobody else holds, without recursion: a chain may be of any length.
    static void destroy(const ShellItem* item);

    [[nodiscard]] const ShellItem* parent() const { return parent_.get(); }
    [[nodiscard]] NativeView name() const;
    [[nodiscard]] const FileInfo& info() const { return info_; }
    [[nodiscard]] Place place() const { return place_; }
    [[nodiscard]] bool isFolder() const { return info_.kind == FileKind::folder || place_ == Place::archive; }
    [[nodiscard]] bool inFileSystem() const { return place_ != Place::insideArchive; }
    [[nodiscard]] bool isReparsePoint() const;
    [[nodiscard]] bool isCloudPlaceholder() const;
    [[nodiscard]] bool isOffline() const;
    // A hidden or system attribute of the item itself.
    [[nodiscard]] bool isHiddenOrSystem() const;

    // The full path; for an entry of an archive the archive's path followed by the entry's path inside it.
    [[nodiscard]] std::filesystem::path path() const;
    // The same as raw bytes or units, the form that path rules and output work on.
    [[nodiscard]] NativeString fullName() const;
    // The archive that holds the item, or null for an item of the file system.
    [[nodiscard]] const ShellItem* enclosingArchive() const;

private:
    ShellItem(Ref<const ShellItem> parent, NativeView name, const FileInfo& info, Place place);
    ~ShellItem() = default;

    Place place_;
    std::uint32_t nameLength_;
    Ref<const ShellItem> parent_;
    FileInfo info_;
    // The name's characters follow the object in the same allocation.
};

}  // namespace kelvane
