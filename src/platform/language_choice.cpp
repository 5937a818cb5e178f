#include "platform/language_choice.h"

#include <algorithm>
#include <string_view>

#include "base/words.h"

namespace kelvane {
namespace {

std::string messagesLocale(const LocaleVariables& variables)
{
    for (const std::string* name : {&variables.lcAll, &variables.lcMessages, &variables.lang})
        if (!name->empty())
            return *name;
    return "C";
}

// A locale's name taken apart: language[_territory][.charset][@modifier].
struct LocaleName {
    explicit LocaleName(std::string_view name)
        : modifier(name.substr(std::min(name.find('@'), name.size()))),
          place(name.substr(0, std::min(name.find('.'), name.size() - modifier.size()))),
          language(place.substr(0, place.find('_')))
    {
    }
    [[nodiscard]] bool isEnglish() const { return language == "C" || language == "POSIX" || language == "en"; }

    std::string_view modifier;  // with its "@"; says little but for scripts (sr@latin)
    std::string_view place;     // language and territory
    std::string_view language;
};

// What could lead to another folder is no language.
bool isPlain(std::string_view name)
{
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '@';
    });
}

void addNames(const LocaleName& locale, std::vector<std::string>& names)
{
    for (const auto modifier : {locale.modifier, std::string_view{}}) {
        for (const auto place : {locale.place, locale.language}) {
            std::string name = std::string(place) + std::string(modifier);
            if (isPlain(name) && std::find(names.begin(), names.end(), name) == names.end())
                names.push_back(std::move(name));
        }
    }
}

}  // namespace

std::vector<std::string> wantedLanguages(const LocaleVariables& variables)
{
    const std::string locale = messagesLocale(variables);
    const LocaleName set(locale);
    if (set.language == "C" || set.language == "POSIX")
        return {};  // LANGUAGE has no say in the plain locale
    std::vector<std::string> names;
    for (const auto& wish : splitWords(variables.language.empty() ? locale : variables.language, ':')) {
        const LocaleName wanted(wish);
        if (wanted.isEnglish())
            break;
        addNames(wanted, names);
    }
    return names;
}

}  // namespace kelvane
