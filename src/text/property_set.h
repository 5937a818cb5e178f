// The property sets of documents in compound files ([MS-OLEPS]).
#pragma once

#include <cstddef>
#include <span>

#include "platform/text_decoding.h"
#include "text/document_sink.h"

namespace kelvane {

// The streams "\x05SummaryInformation" and "\x05DocumentSummaryInformation". What is malformed is left out.
void putSummary(std::span<const std::byte> stream, const TextDecoding& decoding, DocumentSink& sink);
void putDocumentSummary(std::span<const std::byte> stream, const TextDecoding& decoding, DocumentSink& sink);

}  // namespace kelvane
