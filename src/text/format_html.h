// Web pages.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat htmlFormat;

// The first characters of a document in markup, for a look at how it begins: in lower case, without byte-order mark,
// leading white space, comments and what precedes the first element; of UTF-16 the Latin characters.
[[nodiscard]] std::string markupBeginning(std::span<const std::byte> head);

}  // namespace kelvane
