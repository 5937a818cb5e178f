// Properties that documents carry: title, authors, pages, ...
#pragma once

#include <memory>

#include "platform/property_system.h"
#include "text/text_extraction.h"

namespace kelvane {

// Answers from what the extraction finds (System.Search.Contents is the text itself), and asks `next` for everything
// else. A file is extracted once for all its properties as long as it is among the last few that were asked for.
// After a cancel nothing is extracted any more, and values are missing. cancel may be null. Thread-safe; all outlive
// it.
[[nodiscard]] std::unique_ptr<PropertyReaders> makeDocumentReaders(TextExtraction& extraction, PropertyReaders& next,
                                                                   const CancelFlag* cancel = nullptr);

}  // namespace kelvane
