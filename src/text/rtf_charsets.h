// The code pages that RTF names by numbers.
#pragma once

#include <string>

namespace kelvane {

// The code page of a font's character set (\fcharset); 0 where the document's own one holds.
[[nodiscard]] int codePageOfFontCharset(int charset);

// The charset of a code page as text decoding knows it.
[[nodiscard]] std::string charsetOfCodePage(int codePage);

}  // namespace kelvane
