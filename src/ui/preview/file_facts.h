// What is known about a file, in words.
#pragma once

#include <string>
#include <vector>

#include "ui/preview/preview_tools.h"

namespace kelvane {

struct Fact {
    std::u16string name;
    std::u16string value;
};

// Name, folder, size, dates and type, then the columns of the list and what files of its kind say of themselves, as far
// as the file has it. columns: canonical names, parted by commas. On the tools' thread.
[[nodiscard]] std::vector<Fact> readFacts(const Ref<const ShellItem>& file, const std::string& columns,
                                          PreviewTools& tools);

}  // namespace kelvane
