// Files that the commands of the libraries make, and what readers find in them.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/media_decoding.h"

namespace kelvane::testing {

// The bytes of the file that a shell command writes. OUT in the command stands for its path, which ends with this name;
// IN for that of a file with the given bytes. Throws where the command is missing or fails.
[[nodiscard]] std::string madeBy(std::string command, std::string_view outputName, std::string_view input = {});

// The values as text under their names. Fails the test for a value that is not of the type of its property, for a name
// that is none, and for one that comes twice.
[[nodiscard]] std::map<std::string, std::string> shown(const std::vector<NamedValue>& facts);

// What the reader finds in these bytes.
[[nodiscard]] std::map<std::string, std::string> factsOf(FactReading& reader, const std::string& bytes,
                                                         std::string_view fileName);

}  // namespace kelvane::testing
