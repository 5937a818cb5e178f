// Text and properties of one document, in this process and on this thread.
#pragma once

#include <string_view>

#include "platform/random_access_file.h"
#include "text/document_format.h"

namespace kelvane {

// Finds the format and has it read. What the options leave out was left out before.
[[nodiscard]] ExtractedDocument extractDocument(RandomAccessFile& file, std::string_view fileName,
                                                const DocumentServices& services);

}  // namespace kelvane
