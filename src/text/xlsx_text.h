// Spreadsheets: sheets in their order, a line for each row, cells parted by blanks.
#pragma once

#include "text/package_reading.h"

namespace kelvane {

// The part that makes a package one of these, and all that are to be read.
[[nodiscard]] bool isXlsxMain(std::string_view name);
[[nodiscard]] bool isXlsxPart(std::string_view name);

// False when a part is damaged.
[[nodiscard]] bool readXlsxText(const PackageParts& parts, const DocumentServices& services, DocumentSink& sink);

}  // namespace kelvane
