// Text and properties of a document in RTF.
#pragma once

#include <string_view>

#include "platform/text_decoding.h"
#include "text/document_sink.h"

namespace kelvane {

// Any bytes will do: unknown words are formatting, missing brackets stand at the end. Groups may be nested to any
// depth; linear time.
void putRtf(std::string_view document, const TextDecoding& decoding, DocumentSink& sink);

}  // namespace kelvane
