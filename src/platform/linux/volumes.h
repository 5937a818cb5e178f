// The mounted volumes, as the kernel lists them.
#pragma once

#include <cstdint>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/file_system.h"

namespace kelvane::linux_os {

struct Mount {
    std::uint64_t id = 0;
    std::uint64_t device = 0;  // as st_dev
    std::string mountPoint;
    std::string type;        // "ext4", "fuse.sshfs"
    std::string source;      // "/dev/sda1", "server:/export"
    std::string root = "/";  // the folder of the volume that is seen at the mount point
    friend bool operator==(const Mount&, const Mount&) = default;
};

// The lines of /proc/self/mountinfo, whose form proc(5) states; lines of another form are left out.
[[nodiscard]] std::vector<Mount> parseMountInfo(std::string_view text);

// What the type's name alone tells: pseudo, network, fetchesOnRead. A "fuse." in front does not matter.
[[nodiscard]] VolumeFacts factsOfType(std::string_view type);

// What is known of each volume, read from the system when it is first asked for. Thread-safe.
class Volumes {
public:
    // device as st_dev; mount is the mount's id, 0 when unknown: it leads to file systems that give their files device
    // numbers of their own (subvolumes). An unknown volume has only its serial number.
    [[nodiscard]] VolumeFacts facts(std::uint64_t device, std::uint64_t mount);

private:
    std::shared_mutex mutex_;
    std::unordered_map<std::uint64_t, VolumeFacts> byDevice_;
};

}  // namespace kelvane::linux_os
