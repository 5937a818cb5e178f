// The notes that a trash keeps of what lies in it ("*.trashinfo").
#pragma once

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <string>

namespace kelvane::linux_os {

inline constexpr const char* noteEnding = ".trashinfo";

// `place` is where the item was, relative to the top of its volume but for the home trash; the time is local.
[[nodiscard]] std::string trashNote(const std::filesystem::path& place, std::time_t now);

// The name to try for an item in a trash: its own at first, then with a number, then with something random, since
// thousands of files may have one name. With the note's ending it has at most `longest` bytes.
[[nodiscard]] std::string trashName(const std::string& name, unsigned attempt, std::size_t longest);

}  // namespace kelvane::linux_os
