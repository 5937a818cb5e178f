// Why a file stands in its group: its comparison with another one of it, stage by stage.
#pragma once

#include <string>
#include <vector>

#include "ui/preview/preview_tools.h"
#include "ui/preview/previewed_file.h"

namespace kelvane {

struct WhyMatched {
    std::vector<std::vector<std::string>> rows;  // as stageTitles() has columns
    std::vector<std::string> lines;              // below the rows, for a person
    std::string other;                           // the path of the file that it was compared with; empty: with none
};

// Compares it with the first file of its group and, where these two do not match, with the one found just before it:
// files of a group need not match all others. On the tools' thread.
[[nodiscard]] WhyMatched whyMatched(const PreviewedFile& file, PreviewTools& tools);

}  // namespace kelvane
