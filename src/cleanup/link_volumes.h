// What is known of the volumes of a run: whether links failed there, and what kind of drive they are.
#pragma once

#include <unordered_map>

#include "cleanup/cleanup_pass.h"

namespace kelvane {

// One thread; everything given outlives it.
class LinkVolumes {
public:
    LinkVolumes(const PassPorts& ports, CleanupMemory& memory) : ports_(ports), memory_(memory) {}

    // A link failed on the item's volume before, so that none is tried there.
    [[nodiscard]] bool refuses(const ShellItem& item) const;
    // A link in the item's place failed. By a drive letter that is remembered of every failure; without letters only of
    // one that speaks of the volume, since a folder without rights says nothing about its neighbours.
    void failed(const ShellItem& item, const Error& error);

    // The kept one is on a drive that may be taken away, and the item is not.
    [[nodiscard]] bool leadsToExternal(const ShellItem& item, const ShellItem& kept);
    [[nodiscard]] bool isOnNetwork(const ShellItem& item);

private:
    [[nodiscard]] const VolumeFacts& facts(const ShellItem& item);

    const PassPorts& ports_;
    CleanupMemory& memory_;
    std::unordered_map<std::uint64_t, VolumeFacts> facts_;  // by volumeKey()
};

}  // namespace kelvane
