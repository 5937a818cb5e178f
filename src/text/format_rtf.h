// Rich Text Format.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat rtfFormat;

}  // namespace kelvane
