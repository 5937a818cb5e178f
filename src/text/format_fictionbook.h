// FictionBook 2, also packed into a zip.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat fictionBookFormat;

}  // namespace kelvane
