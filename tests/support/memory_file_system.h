// A file system in memory that records every access and can be told to fail.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "support/memory_tree.h"

namespace kelvane::testing {

// Absolute POSIX paths. Thread-safe. Parents are made as needed; every file gets an identity of its own on volume 1
// unless it is made as a hard link.
class MemoryFileSystem final : public FileSystem {
public:
    void addFolder(const std::string& path) { tree()->makeFolders(path); }
    void addFile(const std::string& path, const std::string& contents)
    {
        tree()->add(path, FileKind::regular, contents);
    }
    void addSymbolicLink(const std::string& path, const std::string& target)
    {
        tree()->add(path, FileKind::link, target);
    }
    void addOther(const std::string& path) { tree()->add(path, FileKind::other, ""); }  // a socket, say
    void addHardLink(const std::string& path, const std::string& existing) { tree()->addHardLink(path, existing); }
    void addStream(const std::string& path, const std::string& name, const std::string& contents)
    {
        tree()->existing(path).streams[name] = contents;
    }
    void remove(const std::string& path) { tree()->remove(path); }
    void setModified(const std::string& path, FileTime time) { tree()->existing(path).modified = time; }
    void setAttributes(const std::string& path, std::uint32_t attributes)
    {
        tree()->existing(path).attributes = attributes;
    }
    // The folder and everything below it.
    void setVolume(const std::string& folder, const VolumeFacts& facts) { tree()->setVolume(folder, facts); }
    // Same identity, new time.
    void setContents(const std::string& path, const std::string& contents) { tree()->rewrite(path, contents); }

    // Called before every operation with its name ("enumerate", "details", "open", "read", "skip", "info",
    // "streamNames", "readStream", "volumeFacts") and the path as it was given; returning an error makes the operation
    // fail with it.
    using Hook = std::function<std::optional<Error>(const std::string& operation, const std::string& path)>;
    void setHook(Hook hook)
    {
        const std::lock_guard lock(mutex_);
        hook_ = std::move(hook);
    }

    // Every operation so far, as "operation path", in order.
    [[nodiscard]] std::vector<std::string> accesses() const
    {
        const std::lock_guard lock(mutex_);
        return accesses_;
    }
    [[nodiscard]] std::uint64_t bytesRead() const
    {
        const std::lock_guard lock(mutex_);
        return bytesRead_;
    }

    Status enumerate(const std::filesystem::path& folder, Links links, const EntrySink& sink) override;
    Result<FileDetails> details(const std::filesystem::path& path, Links links) override;
    Result<std::unique_ptr<ContentReader>> openForReading(const std::filesystem::path& path, ReadPattern pattern,
                                                          Links links = Links::asThemselves) override;
    Result<std::vector<std::string>> streamNames(const std::filesystem::path& path) override;
    Result<std::vector<std::byte>> readStream(const std::filesystem::path& path, const std::string& name,
                                              std::size_t limit) override;
    Result<VolumeFacts> volumeFacts(const std::filesystem::path& path) override;
    Result<std::u16string> ownerName(std::uint32_t ownerId) override;

private:
    class Reader;

    // The tree, locked as long as this lives.
    struct Locked {
        std::unique_lock<std::mutex> lock;
        MemoryTree* tree;
        MemoryTree* operator->() const { return tree; }
    };

    Locked tree() { return {std::unique_lock(mutex_), &tree_}; }
    [[nodiscard]] std::optional<Error> begin(const std::string& operation, const std::string& path);
    [[nodiscard]] Result<MemoryTree::Found> reach(const std::string& operation, const std::filesystem::path& path,
                                                  Links links = Links::followed);

    mutable std::mutex mutex_;
    MemoryTree tree_;
    std::vector<std::string> accesses_;
    std::uint64_t bytesRead_ = 0;
    Hook hook_;
};

}  // namespace kelvane::testing
