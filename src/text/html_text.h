// The text of a page, as a person reads it, and what the page says of itself.
#pragma once

#include <string>
#include <string_view>

#include "text/document_sink.h"

namespace kelvane {

// Scripts, styles and comments are left out; blocks begin a line, cells are parted by a blank, white space collapses as
// in browsers, but for preformatted text. Title and meta elements become properties where they are wanted. Any depth,
// linear time.
void putHtmlText(std::u16string_view document, DocumentSink& sink, bool withProperties);

// The charset that a page or an XML document declares within its first bytes; empty for none.
[[nodiscard]] std::string declaredMarkupCharset(std::string_view head);

}  // namespace kelvane
