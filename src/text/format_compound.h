// Office documents before 2007: doc, xls and ppt, by the programs of catdoc.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat compoundFormat;

}  // namespace kelvane
