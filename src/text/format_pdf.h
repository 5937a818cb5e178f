// PDF, by the programs of poppler-utils.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat pdfFormat;

}  // namespace kelvane
