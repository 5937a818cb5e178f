// XML of whatever kind: the texts between its tags.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat xmlFormat;

}  // namespace kelvane
