// XML documents in the charsets that the XML port need not know.
#pragma once

#include <span>
#include <vector>

#include "platform/text_decoding.h"

namespace kelvane {

// The document in UTF-8 or UTF-16, for which it need not declare anything. One in another charset loses its
// declaration.
[[nodiscard]] std::vector<std::byte> xmlInUtf8(std::span<const std::byte> document, const TextDecoding& decoding);

}  // namespace kelvane
