// Messages of mail and news, and web pages saved as one.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat mailFormat;

}  // namespace kelvane
