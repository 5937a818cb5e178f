// Texts of the list as bytes that are cheap to hold by the million, to search and to compare.
#pragma once

#include <string>
#include <string_view>

#include "platform/text_folding.h"

namespace kelvane {

// Appends the text in lower case as WTF-8: a text holds another one exactly when their bytes do.
void appendFolded(std::string& bytes, std::u16string_view text, const TextFolding& folding);

// Appends a key by which texts sort as people expect when keys are compared byte by byte: case aside, and runs of
// digits by their number, so that "img2" comes before "img10". A separator of folders comes before all other
// characters, so that a folder's contents follow it at once. Texts that are one by these rules stand by their own
// bytes, lower-case ones without zeros in front before the others. No byte of a key is 0.
void appendSortKey(std::string& bytes, std::u16string_view text, const TextFolding& folding);

}  // namespace kelvane
