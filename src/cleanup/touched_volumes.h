// The volumes that a run changes names on, or relies on.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>

#include "platform/held_files.h"
#include "platform/shell_item.h"

namespace kelvane {

// A journal on another device than the items must not say that a run came to its end before they have it too. One
// thread.
class TouchedVolumes {
public:
    // The trash that an item went to is on its volume.
    void add(const ShellItem& item);
    // Returns when the devices have it all; the first error when some do not. A run that ends so is to be left open,
    // for settling to look at.
    [[nodiscard]] Status flush(HeldFiles& files) const;

private:
    std::map<std::uint64_t, std::filesystem::path> folders_;  // one of each volume, by its serial number
};

}  // namespace kelvane
