// A person at the scan pane of a test's window.
#pragma once

#include <filesystem>
#include <set>
#include <string>

#include "support/ui/desktop_world.h"
#include "ui/scan/scan_pane.h"

namespace kelvane::testing {

using NamedGroups = std::set<std::set<std::string>>;

[[nodiscard]] inline ScanPane& scanPane(const DesktopWorld& world)
{
    return *world.find<ScanPane>("scan.pane");
}

// Lets folders fall on the widget of this name, or on the window itself.
void dropFolders(const DesktopWorld& world, const char* widget, const std::vector<std::filesystem::path>& folders);
void dropFolder(const DesktopWorld& world, const char* widget, const std::filesystem::path& folder);

void click(const DesktopWorld& world, const char* button);

// Clicks the button and waits until the scan that it starts has ended; false when none began.
[[nodiscard]] bool scanBy(DesktopWorld& world, const char* button);

// What the list holds, by the names of files.
[[nodiscard]] NamedGroups listedGroups(DesktopWorld& world);

}  // namespace kelvane::testing
