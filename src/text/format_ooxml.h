// Office Open XML (ECMA-376): docx, xlsx, pptx and their kin. Which one it is, is told by the parts.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat ooxmlFormat;

}  // namespace kelvane
