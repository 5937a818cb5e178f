// Files that a person declared not to be duplicates of one another.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/file_time.h"
#include "engine/content_digest.h"
#include "engine/known_files.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// One file of a declaration, told by what it is and not by its name: it may be renamed and moved on its volume. Once
// its contents are others, nothing was declared about them.
struct IgnoredFile {
    FileIdentity identity;
    FileSize size;
    ContentDigest digest;
    std::string path;  // its name when it was declared, for people only; the form of path rules
    friend bool operator==(const IgnoredFile&, const IgnoredFile&) = default;
};

// One declaration: no two of these files are duplicates of one another. A pair is a group of two.
struct IgnoredGroup {
    FileTime when;
    std::vector<IgnoredFile> files;
    friend bool operator==(const IgnoredGroup&, const IgnoredGroup&) = default;
};

// All declarations, looked up by file. Immutable; safe on several threads. The groups must outlive it.
class IgnoredPairs {
public:
    explicit IgnoredPairs(std::span<const IgnoredGroup> groups);

    struct Entry {
        std::uint32_t group = 0;  // index of the declaration
        const IgnoredFile* file = nullptr;
    };

    [[nodiscard]] bool empty() const { return entries_.empty(); }
    // Where the file occurs, at most once in each declaration. Contents are not looked at.
    [[nodiscard]] std::span<const Entry> of(FileIdentity identity) const;

private:
    std::unordered_map<FileIdentity, std::vector<Entry>, FileIdentityHash> entries_;
};

// A file as it is now, to be declared. Reads all of it. Errors: of opening and reading; wrongType when it is no regular
// file; notSupported where files have no identity to be known again by (in archives, on some file systems); changed
// when it changed meanwhile; cancelled.
[[nodiscard]] Result<IgnoredFile> ignoredFileOf(ShellNamespace& shell, const ShellItem& item, const CancelFlag& cancel);

}  // namespace kelvane
