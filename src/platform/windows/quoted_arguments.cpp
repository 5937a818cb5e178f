#include "platform/windows/quoted_arguments.h"

namespace kelvane::windows_os {

std::wstring quoted(const std::wstring& word)
{
    if (!word.empty() && word.find_first_of(L" \t\n\v\"") == std::wstring::npos)
        return word;
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : word) {
        backslashes = character == L'\\' ? backslashes + 1 : backslashes;
        if (character == L'"')
            text.append(backslashes + 1, L'\\');  // each backslash before it once more, and one for itself
        if (character != L'\\')
            backslashes = 0;
        text += character;
    }
    text.append(backslashes, L'\\');
    return text + L'"';
}

}  // namespace kelvane::windows_os
