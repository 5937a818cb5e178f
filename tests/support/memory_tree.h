// The files and folders of a file system in memory, and what paths lead to.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_system.h"

namespace kelvane::testing {

// One physical file; hard links share it.
struct MemoryNode {
    FileKind kind = FileKind::regular;
    std::string contents;  // of a link: its target
    std::map<std::string, std::string> streams;
    FileTime modified;
    std::uint32_t attributes = 0;
    std::uint64_t index = 0;
    std::uint32_t links = 1;
};

// Not thread-safe: whoever holds it locks.
class MemoryTree {
public:
    // What a path leads to, and under which name free of links.
    struct Found {
        std::string path;
        std::shared_ptr<MemoryNode> node;
    };
    using Children = std::vector<std::pair<std::string, FileInfo>>;

    MemoryTree();

    void makeFolders(const std::string& path);
    void add(const std::string& path, FileKind kind, std::string contents);
    void addHardLink(const std::string& path, const std::string& existing);
    void remove(const std::string& path);
    void rewrite(const std::string& path, std::string contents);
    void setVolume(const std::string& folder, const VolumeFacts& facts) { volumes_[folder] = facts; }

    // Throws std::out_of_range when there is no such name; links on the way are not looked through.
    [[nodiscard]] MemoryNode& existing(const std::string& path) const { return *nodes_.at(path); }
    [[nodiscard]] Result<Found> resolve(const std::filesystem::path& path, Links last, int linksLeft = 40) const;
    [[nodiscard]] VolumeFacts volumeOf(const std::string& path) const;
    [[nodiscard]] FileInfo infoOf(const Found& found) const;  // all that does not go by the name
    [[nodiscard]] Result<FileInfo> infoAt(const std::string& path, Links links) const;
    // By name; folder is free of links.
    [[nodiscard]] Children children(const std::string& folder, Links links) const;

private:
    std::map<std::string, std::shared_ptr<MemoryNode>> nodes_;
    std::map<std::string, VolumeFacts> volumes_;
    std::uint64_t nextIndex_ = 1;
    std::int64_t nextTime_ = 133'000'000'000'000'000;
};

}  // namespace kelvane::testing
