// The words that a program is started with.
#pragma once

#include <string>
#include <vector>

namespace kelvane {

// Without the program's own name, in the form of PathRules: the same bytes on Linux; WTF-8 on Windows, where main's own
// words have lost what the code page cannot say. Takes what main was given; defined by the adapter that the program is
// linked with.
[[nodiscard]] std::vector<std::string> programArguments(int count, char** words);

}  // namespace kelvane
