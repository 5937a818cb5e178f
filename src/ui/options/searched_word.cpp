#include "ui/options/searched_word.h"

#include <algorithm>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr qsizetype fewestTyped = 3;   // of a word that is not at its end yet
constexpr qsizetype fewestWithin = 4;  // shorter ones have to begin a word, since many words happen to hold them

bool isMeant(const QString& typed, const QString& known)
{
    return typed.startsWith(known) || (typed.size() >= fewestTyped && known.startsWith(typed));
}

bool holds(const QString& text, const QString& word)
{
    for (qsizetype at = text.indexOf(word); at >= 0; at = text.indexOf(word, at + 1))
        if (word.size() >= fewestWithin || at == 0 || !text[at - 1].isLetterOrNumber())
            return true;
    return false;
}

}  // namespace

SearchedWord::SearchedWord(const QString& typed) : typed_(typed.toLower())
{
    for (const QString& group : shown(desktop_text::optionSynonyms).split(u';')) {
        QStringList words = group.split(u',');
        std::for_each(words.begin(), words.end(), [](QString& word) { word = word.trimmed(); });
        if (std::any_of(words.begin(), words.end(), [this](const QString& word) { return isMeant(typed_, word); }))
            others_ += words;
    }
}

bool SearchedWord::fits(const QString& text) const
{
    return text.contains(typed_) ||
           std::any_of(others_.begin(), others_.end(), [&](const QString& word) { return holds(text, word); });
}

}  // namespace kelvane
