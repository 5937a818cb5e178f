// Results as files: opened, saved, written as a table. On the thread of a window.
#pragma once

#include <QString>
#include <filesystem>

#include "ui/core/workbench.h"

namespace kelvane {

// The list on screen stays as it is when this fails, which is told, naming the file and the reason.
void openResults(Workbench& bench, const std::filesystem::path& file);
// Hidden items are saved as well, marks are not.
void saveListedResults(Workbench& bench, const std::filesystem::path& file);
// Shows and selects all items; the table is opened with the desktop's program for such files.
void exportTable(Workbench& bench, const std::u16string& windowTitle);

// A warning over the window.
void showProblem(Workbench& bench, const std::u16string& problem);

}  // namespace kelvane
