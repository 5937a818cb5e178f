// The two kinds of files in which folders keep comments.
#pragma once

#include <string>
#include <string_view>

#include "platform/text_folding.h"

namespace kelvane {

// The value of a key in a section of an INI text; case of both is ignored, quotation marks around the value are taken
// off. Empty when there is none.
[[nodiscard]] std::u16string iniValue(std::u16string_view ini, std::u16string_view section, std::u16string_view key,
                                      const TextFolding& folding);

// The comment for a file in the text of a "descript.ion": lines of a name, in ' or " when it holds spaces, a space or
// tab, and the comment. A name in other case counts when no line has the very name. Empty when there is none.
[[nodiscard]] std::u16string describedComment(std::u16string_view descriptions, std::u16string_view fileName,
                                              const TextFolding& folding);

}  // namespace kelvane
