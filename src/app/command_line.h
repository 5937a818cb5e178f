// The command line as the program understands it: switches and a target.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "app/command_text.h"

namespace kelvane {

namespace command_flag {
inline constexpr std::uint32_t optionM = 0x10;       // /M: for the window, which decides what it means
inline constexpr std::uint32_t ownProcess = 0x100;   // /P
inline constexpr std::uint32_t helperMode = 0x400;   // /S: no window; the process serves its port
inline constexpr std::uint32_t optionJ = 0x800;      // /J: for what the windows share, before the first one opens
inline constexpr std::uint32_t afterCrash = 0x2000;  // /X: the system started the program again after a crash
}  // namespace command_flag

// Handed on to whoever serves it: the first window, a further one, the helper.
struct CommandLine {
    std::vector<std::filesystem::path> targets;  // the arguments that are no switches, absolute
    std::string gValue;                          // /G:text
    std::filesystem::path settingsFile;          // /I:path, as it was given
    std::string helperRequest;                   // /S:text
    std::uint32_t showCommand = 0;               // how the window is to appear; the desktop's own number
    std::uint32_t flags = 0;

    [[nodiscard]] bool has(std::uint32_t flag) const { return (flags & flag) != 0; }
};

// Whether something, file or folder, is there.
using PathExists = std::function<bool(const std::filesystem::path&)>;

// An argument that begins with "-" or "/" is a switch, and its second character alone says which; what follows the
// third character is its value. I, G, J, M and P are taken in both cases; S (of an elevated process only) and X in
// upper case only, since nobody is meant to type them; other letters are ignored.
//
// Under POSIX syntax a "/" also begins every absolute path. There such an argument is a switch only when it is exactly
// one of these letters after the "/", or one of I, G and S with a colon and its value, and nothing of that name exists.
//
// Several arguments, none of them a switch, of which the last names nothing that exists, are one path with blanks that
// nobody put in quotation marks, unless one of the others does and that path does not. Relative targets are taken from
// text.folder; names of the shell's own ("::{...}") stay as they are.
[[nodiscard]] CommandLine parseCommandLine(const CommandText& text, std::uint32_t showCommand, bool elevated,
                                           const PathExists& exists);

// Whether the person wants a process of their own: the text holds " /P" or " /p" anywhere (as "/P" an argument of its
// own under POSIX syntax). A "-p" does not ask for one.
[[nodiscard]] bool forbidsHandOver(const CommandText& text, const PathExists& exists);

}  // namespace kelvane
