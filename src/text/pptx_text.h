// Presentations: slides in their order, then what speakers noted.
#pragma once

#include "text/package_reading.h"

namespace kelvane {

// The part that makes a package one of these, and all that are to be read.
[[nodiscard]] bool isPptxMain(std::string_view name);
[[nodiscard]] bool isPptxPart(std::string_view name);

// False when a part is damaged.
[[nodiscard]] bool readPptxText(const PackageParts& parts, const DocumentServices& services, DocumentSink& sink);

}  // namespace kelvane
