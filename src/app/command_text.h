// What the program was started with, before any meaning is given to it: how each system hands over arguments, and the
// form in which one process passes them to another.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/port_text.h"
#include "base/result.h"

namespace kelvane {

// All texts are in the form of PathRules: the bytes themselves on Linux, WTF-8 on Windows.
struct CommandText {
    CommandSyntax syntax = nativeSyntax;
    std::string line;                // Windows: everything, the program's name included
    std::vector<std::string> words;  // POSIX: everything, the program's name included
    std::filesystem::path folder;    // the working folder, which relative paths are meant from

    friend bool operator==(const CommandText&, const CommandText&) = default;
};

// Of arguments that the system has split already, the program's name first.
[[nodiscard]] CommandText commandTextFromWords(std::vector<std::string> words, std::filesystem::path folder,
                                               CommandSyntax syntax = nativeSyntax);

// The arguments, without the program's name.
[[nodiscard]] std::vector<std::string> argumentsOf(const CommandText& text);

// The same as one text: as it was typed on Windows, the words with a blank between them on POSIX.
[[nodiscard]] std::string argumentTextOf(const CommandText& text);

// The rules that Microsoft publishes for its C run-time and for CommandLineToArgvW. The program's name ends at the
// closing quotation mark when it begins with one, else at the first blank; backslashes mean nothing in it. In the
// arguments 2n backslashes before a quotation mark are n backslashes, 2n + 1 are n backslashes and a plain quotation
// mark; two quotation marks inside a quoted part are one plain one. Elsewhere a backslash is a backslash.
[[nodiscard]] std::vector<std::string> splitWindowsArguments(std::string_view line);

// The reverse: a line that these rules split into the same words. The program's name must hold no quotation mark.
[[nodiscard]] std::string joinWindowsArguments(const std::vector<std::string>& words);

// The bytes of a hand-over. Windows: the line in UTF-16 (low byte first) with its terminating zero, and after it the
// working folder in the same way (missing from a sender that knows no folder). POSIX: the working folder and each word,
// with a zero byte after each.
[[nodiscard]] std::vector<std::byte> encodeHandOver(const CommandText& text);
// `invalid` for anything else; the bytes come from another process and nothing about them is taken on trust.
[[nodiscard]] Result<CommandText> decodeHandOver(std::span<const std::byte> bytes, CommandSyntax syntax = nativeSyntax);

}  // namespace kelvane
