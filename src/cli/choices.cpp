#include "cli/choices.h"

#include "base/words.h"

namespace kelvane {
namespace {

std::string joined(const std::vector<std::string>& words)
{
    std::string list;
    for (const auto& word : words)
        list += (list.empty() ? "" : ", ") + word;
    return list;
}

}  // namespace

std::string unknownWord(std::string_view what, std::string_view typed, const std::vector<std::string>& known)
{
    std::string message = "unknown " + std::string(what) + " \"" + std::string(typed) + '"';
    if (const auto near = nearestWords(typed, known); !near.empty())
        message += " (did you mean " + joined(near) + "?)";
    return message + "; known: " + joined(known);
}

}  // namespace kelvane
