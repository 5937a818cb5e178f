// Subtitles: what is said, without times, numbers and looks. Two files of one film differ in those (another release,
// another frame rate, another format), and hardly in what is said.
#pragma once

#include "text/document_format.h"

namespace kelvane {

extern const DocumentFormat subtitleFormat;

}  // namespace kelvane
