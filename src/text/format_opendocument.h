// OpenDocument (ISO/IEC 26300): odt, ods, odp and their kin, and the format that it came from.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat openDocumentFormat;

}  // namespace kelvane
