// Which format a file has.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "text/document_format.h"

namespace kelvane {

// All formats; rows whose bytes tell more come first. Constant, thread-safe.
[[nodiscard]] std::span<const DocumentFormat> documentFormats();

// By the name's extension alone ("report.PDF", in any case); null for none.
[[nodiscard]] const DocumentFormat* formatByName(std::string_view fileName);

// By the first bytes, and by the name where they do not tell; null when nothing reads such a file. Zip packages are
// told apart by their first parts, so `head` should be 4096 bytes where there are as many.
[[nodiscard]] const DocumentFormat* formatOf(std::string_view fileName, std::span<const std::byte> head);

}  // namespace kelvane
