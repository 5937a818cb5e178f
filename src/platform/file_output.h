// Port: writing the program's own files (settings, logs, saved scans) so that a crash leaves the old or the new one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

#include "base/result.h"

namespace kelvane {

// A file that is being written. Closed by its destructor, which cannot tell of a failure: close() can.
class OutputFile {
public:
    virtual ~OutputFile() = default;
    // All of the bytes, or an error.
    [[nodiscard]] virtual Status write(std::span<const std::byte> bytes) = 0;
    // Returns when the device has the contents.
    [[nodiscard]] virtual Status flush() = 0;
    [[nodiscard]] virtual Status close() = 0;
};

// Held until destroyed, also by the end of the process. Other processes and other threads wait for it.
class FileLock {
public:
    virtual ~FileLock() = default;
};

// All calls are thread-safe; paths are absolute.
class FileOutput {
public:
    virtual ~FileOutput() = default;

    // A new, empty file that only its owner may read (on Windows those whom its folder admits); `exists` when something
    // has this name already.
    [[nodiscard]] virtual Result<std::unique_ptr<OutputFile>> create(const std::filesystem::path& path) = 0;

    // Appends to an existing file or a new one, which only its owner may read.
    [[nodiscard]] virtual Result<std::unique_ptr<OutputFile>> append(const std::filesystem::path& path) = 0;

    // One step, also when `to` exists: at every instant `to` is the old file or the new one. Both on one volume.
    // `wrongType` when `to` is a device, a pipe or a link.
    [[nodiscard]] virtual Status replace(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

    // Returns when the device has the names in the folder; success where the system has no such call.
    [[nodiscard]] virtual Status flushFolder(const std::filesystem::path& folder) = 0;

    // A file only, never a folder.
    [[nodiscard]] virtual Status remove(const std::filesystem::path& path) = 0;

    // With those above it; success when it is there already.
    [[nodiscard]] virtual Status createFolders(const std::filesystem::path& folder) = 0;

    // Gives `to` the access rights of `from`, as far as the caller may.
    [[nodiscard]] virtual Status copyAccess(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

    // What the path finally leads to when it is a link, also where nothing is yet; the path itself when it is none.
    [[nodiscard]] virtual Result<std::filesystem::path> target(const std::filesystem::path& path) = 0;

    // Waits at most `milliseconds` for the lock beside the file at `path` (made as needed): `tooManyOpen` when another
    // process would not let go.
    [[nodiscard]] virtual Result<std::unique_ptr<FileLock>> lock(const std::filesystem::path& path,
                                                                 std::uint32_t milliseconds) = 0;
};

// Puts the bytes in the place of the file: written under a temporary name beside it, flushed, renamed over it. A path
// that is a link keeps being one, and a file keeps its access rights. What fails leaves the old file and no temporary
// one; only when the folder cannot be flushed, the new file is there already, but may be lost with the power.
[[nodiscard]] Status replaceContents(FileOutput& output, const std::filesystem::path& path,
                                     std::span<const std::byte> bytes);

// The temporary name of the n-th attempt (from 1; a name that is taken leads to the next one). A file of such a name is
// what a killed process left behind, unless a process is writing just now.
[[nodiscard]] std::filesystem::path temporaryBeside(const std::filesystem::path& path, unsigned attempt);

}  // namespace kelvane
