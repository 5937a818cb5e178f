#include "app/command_line.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/native_text.h"

namespace kelvane {
namespace {

// The letters in the cases in which they are taken.
constexpr std::string_view knownLetters = "IiGgJjMmPpSX";
constexpr std::string_view lettersWithValue = "IiGgS";

bool isOneOf(std::string_view letters, char letter)
{
    return letters.find(letter) != std::string_view::npos;
}

bool looksLikeSwitchOnPosix(std::string_view word)
{
    if (word.size() < 2 || !isOneOf(knownLetters, word[1]))
        return false;
    return word.size() == 2 || (word[2] == ':' && isOneOf(lettersWithValue, word[1]));
}

bool isSwitch(std::string_view word, CommandSyntax syntax, const PathExists& exists)
{
    if (word.starts_with('-'))
        return true;
    if (!word.starts_with('/'))
        return false;
    return syntax == CommandSyntax::windows || (looksLikeSwitchOnPosix(word) && !exists(nativeFromBytes(word)));
}

void applySwitch(std::string_view word, bool elevated, CommandLine& line)
{
    const char letter = word.size() > 1 ? word[1] : '\0';
    const std::string value(word.substr(std::min<std::size_t>(3, word.size())));
    switch (letter) {
    case 'I':
    case 'i':
        line.settingsFile = nativeFromBytes(value);
        break;
    case 'G':
    case 'g':
        line.gValue = value;
        break;
    case 'J':
    case 'j':
        line.flags |= command_flag::optionJ;
        break;
    case 'M':
    case 'm':
        line.flags |= command_flag::optionM;
        break;
    case 'P':
    case 'p':
        line.flags |= command_flag::ownProcess;
        break;
    case 'S':
        if (elevated) {
            line.helperRequest = value;
            line.flags |= command_flag::helperMode;
        }
        break;
    case 'X':
        line.flags |= command_flag::afterCrash;
        break;
    default:
        break;
    }
}

std::filesystem::path resolved(const std::string& target, const std::filesystem::path& folder)
{
    const std::filesystem::path path = nativeFromBytes(target);
    return target.empty() || target.starts_with("::") ? path : folder / path;
}

}  // namespace

CommandLine parseCommandLine(const CommandText& text, std::uint32_t showCommand, bool elevated,
                             const PathExists& exists)
{
    CommandLine line;
    line.showCommand = showCommand;
    const auto arguments = argumentsOf(text);
    bool switches = false;
    for (const auto& argument : arguments) {
        if (isSwitch(argument, text.syntax, exists)) {
            switches = true;
            applySwitch(argument, elevated, line);
        } else {
            line.targets.push_back(resolved(argument, text.folder));
        }
    }
    if (arguments.size() < 2 || switches || exists(line.targets.back()))
        return line;
    const std::filesystem::path joined = resolved(argumentTextOf(text), text.folder);
    if (exists(joined) || std::none_of(line.targets.begin(), line.targets.end(), exists))
        line.targets = {joined};
    return line;
}

bool forbidsHandOver(const CommandText& text, const PathExists& exists)
{
    if (text.syntax == CommandSyntax::windows)
        return text.line.find(" /P") != std::string::npos || text.line.find(" /p") != std::string::npos;
    const auto words = argumentsOf(text);
    return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
        return (word == "/P" || word == "/p") && isSwitch(word, text.syntax, exists);
    });
}

}  // namespace kelvane
