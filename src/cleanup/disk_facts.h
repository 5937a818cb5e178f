// What the disk says of the files of a plan.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>

#include "cleanup/cleanup_plan.h"
#include "platform/file_system.h"
#include "platform/held_files.h"

namespace kelvane {

// Asks each volume once, and remembers of the files only the kept one that was asked about last and the folder that was
// open last: items come group by group. What cannot be found out counts as nothing to tell. One thread; the ports
// outlive it.
class DiskFacts {
public:
    DiskFacts(FileSystem& files, HeldFiles& held) : files_(files), held_(held) {}
    DiskFacts(const DiskFacts&) = delete;
    DiskFacts& operator=(const DiskFacts&) = delete;

    // Functions that ask this object, which has to outlive them.
    [[nodiscard]] CleanupFacts facts(const CScanNode& definition, const PathRules& paths);

    [[nodiscard]] bool onNetwork(const ShellItem& item);
    [[nodiscard]] bool canClone(const ShellItem& item);
    [[nodiscard]] std::uint32_t linkCount(const ShellItem& item);
    [[nodiscard]] std::uint64_t sharedBytes(const ShellItem& item);
    [[nodiscard]] std::uint8_t metadataLoss(const ShellItem& item, const ShellItem& kept);

private:
    struct Volume {
        bool network = false;
        bool clones = false;
    };
    [[nodiscard]] Volume volumeOf(const ShellItem& item);
    [[nodiscard]] Volume askVolume(const ShellItem& item);
    [[nodiscard]] std::unique_ptr<HeldFile> open(const ShellItem& item);
    [[nodiscard]] std::optional<FileMetadata> metadataOf(const ShellItem& item);

    FileSystem& files_;
    HeldFiles& held_;
    std::map<std::uint64_t, Volume> volumes_;  // by serial number
    std::unique_ptr<HeldFolder> folder_;
    std::filesystem::path keptPath_;
    std::optional<FileMetadata> kept_;
};

}  // namespace kelvane
