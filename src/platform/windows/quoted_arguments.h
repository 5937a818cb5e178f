// One word of a command line.
#pragma once

#include <string>

namespace kelvane::windows_os {

// So that the receiving program's run-time splits it off as one word again: by the rules that Microsoft publishes for
// its C run-time. A word without blanks or quotation marks stays as it is.
[[nodiscard]] std::wstring quoted(const std::wstring& word);

}  // namespace kelvane::windows_os
