// From a stream to the TagLib class that reads it.
#pragma once

#include <memory>
#include <string_view>
#include <taglib/tfile.h>

#include "platform/linux/media/taglib_stream.h"

namespace kelvane::linux_os {

// Makes the library read texts of one byte a character as the bytes suggest: UTF-8 where they are well-formed UTF-8,
// Windows-1252 otherwise. Formats say Latin-1, and programs write what their system uses. Once in a process.
void readNarrowTextsLeniently();

// By the content; by the extension of the name where the content tells nothing. Null for a file that no class reads.
// The stream outlives it. Its sound is not looked at.
[[nodiscard]] std::unique_ptr<TagLib::File> openTagged(TaglibStream& stream, std::string_view fileName);

}  // namespace kelvane::linux_os
