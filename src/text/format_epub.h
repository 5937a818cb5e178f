// EPUB 2 and 3.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat epubFormat;

}  // namespace kelvane
