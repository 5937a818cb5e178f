// Words that a person may choose from, and what is said about any other word.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "base/text_table.h"

namespace kelvane {

// unknown format "jsn" (did you mean json?); known: text, json -- the pattern has the word as its %1.
[[nodiscard]] std::string unknownWord(TextId pattern, std::string_view typed, const std::vector<std::string>& known);

// The same where only some of the known words are to be listed.
[[nodiscard]] std::string unknownWord(TextId pattern, std::string_view typed, const std::vector<std::string>& known,
                                      const std::vector<std::string>& listed);

template <class T>
struct Choice {
    std::string_view word;
    T value;
};

// The value of a word; `invalid` with the message above for a word that is not among the choices.
template <class T>
[[nodiscard]] Result<T> choose(TextId pattern, std::string_view typed, std::span<const Choice<T>> choices)
{
    std::vector<std::string> known;
    for (const auto& choice : choices) {
        if (choice.word == typed)
            return choice.value;
        known.emplace_back(choice.word);
    }
    return invalid(unknownWord(pattern, typed, known));
}

}  // namespace kelvane
