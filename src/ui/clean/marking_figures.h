// What is marked, by folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "results/results_model.h"
#include "ui/core/row_mirror.h"

namespace kelvane {

struct FolderMarks {
    std::string folder;  // bytes, as path rules hold it
    MarkSum sum;
};

struct MarksByFolder {
    std::vector<FolderMarks> top;  // most bytes first
    std::size_t others = 0;        // further folders
};

// Of the marked rows in view. Takes a look at every row.
[[nodiscard]] MarksByFolder marksByFolder(const ResultsModel& results, std::size_t most);

// Groups without an unmarked row, of those in view; of a list that is not grouped it counts nothing.
[[nodiscard]] std::uint32_t groupsWhollyMarked(const RowMirror& rows);

}  // namespace kelvane
