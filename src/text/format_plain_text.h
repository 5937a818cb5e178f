// Texts without markup: the text stays exactly as it is.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat plainTextFormat;
// Programs, settings and whatever else people write in a text editor. The name is believed here even where the text
// looks like another format: a page template is not the page.
extern const DocumentFormat sourceCodeFormat;

}  // namespace kelvane
