// Port: what is kept from run to run, so that it need not be made again: descriptors of files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/file_size.h"
#include "base/file_time.h"
#include "base/result.h"
#include "platform/file_info.h"

namespace kelvane {

// Kinds of values; kept on disk, so never renumbered.
enum class CachedKind : std::uint32_t {
    documentDescriptor = 1,
    audioFingerprint = 2,
    picturePreview = 3,    // also those of films
    previewSignature = 4,  // what is needed of a preview before two are held against each other
    mediaFacts = 5,
};

// A value belongs to a file as it was: any other size, time or identity is another file. `shape` is a digest of
// everything else that the value depends on (settings, the version of what made it). Nothing is kept of a file without
// an identity.
struct RunCacheKey {
    CachedKind kind = CachedKind::documentDescriptor;
    FileIdentity identity;
    FileSize size;
    FileTime modified;
    FileTime changed;  // of the inode, where the system has one; 0 otherwise
    std::uint64_t shape = 0;
    friend bool operator==(const RunCacheKey&, const RunCacheKey&) = default;
};

struct RunCacheFigures {
    std::uint64_t values = 0;
    std::uint64_t bytes = 0;  // on the disk
};

// Thread-safe. No method fails: what cannot be read is not there, what cannot be written is not kept. A damaged cache
// is thrown away and begun anew.
class RunCache {
public:
    virtual ~RunCache() = default;
    // An empty value is one that was put as such: "nothing can be made of this file".
    [[nodiscard]] virtual std::optional<std::vector<std::byte>> find(const RunCacheKey& key) = 0;
    // May be written later, at the latest by flush() or at the end. One file keeps one value of a kind.
    virtual void put(const RunCacheKey& key, std::span<const std::byte> value) = 0;
    // Writes what is due and, beyond the bound, lets go of what was not used for longest.
    virtual void flush() = 0;
};

// Where caches come from. Thread-safe.
class RunCaches {
public:
    virtual ~RunCaches() = default;
    // Of at most so many bytes on the disk. Several processes may share it. notSupported where the system has none;
    // an error that names the file when it can be neither used nor made.
    [[nodiscard]] virtual Result<std::unique_ptr<RunCache>> open(std::uint64_t largestBytes) = 0;
    [[nodiscard]] virtual Result<RunCacheFigures> figures() = 0;  // zeros when there is none yet
    [[nodiscard]] virtual Status clear() = 0;
};

}  // namespace kelvane
