// Texts of word processors: the body, then the notes.
#pragma once

#include "text/package_reading.h"

namespace kelvane {

// The part that makes a package one of these, and all that are to be read.
[[nodiscard]] bool isDocxMain(std::string_view name);
[[nodiscard]] bool isDocxPart(std::string_view name);

// False when a part is damaged.
[[nodiscard]] bool readDocxText(const PackageParts& parts, const DocumentServices& services, DocumentSink& sink);

}  // namespace kelvane
