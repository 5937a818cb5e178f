#include "text/detect_string.h"

#include <algorithm>
#include <optional>

#include "base/words.h"

namespace kelvane {
namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view variable = "ext";

class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    bool take(char character)
    {
        skipBlanks();
        if (!rest_.starts_with(character))
            return false;
        rest_.remove_prefix(1);
        return true;
    }

    // EXT="PDF": the extension in lower case.
    std::optional<std::string> test()
    {
        skipBlanks();
        if (asciiLower(rest_.substr(0, variable.size())) != variable)
            return std::nullopt;
        rest_.remove_prefix(variable.size());
        if (!take('=') || !take('"'))
            return std::nullopt;
        const std::size_t end = rest_.find('"');
        if (end == std::string_view::npos)
            return std::nullopt;
        std::string extension = asciiLower(rest_.substr(0, end));
        rest_.remove_prefix(end + 1);
        return extension;
    }

    bool atEnd()
    {
        skipBlanks();
        return rest_.empty();
    }

private:
    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size())); }

    std::string_view rest_;
};

std::string extensionOf(std::string_view fileName)
{
    const std::size_t dot = fileName.rfind('.');
    return dot == std::string_view::npos ? std::string() : asciiLower(fileName.substr(dot + 1));
}

}  // namespace

DetectString::DetectString(std::string_view text)
{
    Scanner scanner(text);
    std::vector<Extensions> choices(1);
    while (auto extension = scanner.test()) {
        choices.back().push_back(*std::move(extension));
        if (scanner.atEnd()) {
            choices_ = std::move(choices);
            return;
        }
        if (scanner.take('|'))
            choices.emplace_back();
        else if (!scanner.take('&'))
            return;
    }
}

bool DetectString::admits(std::string_view fileName) const
{
    if (admitsAll())
        return true;
    const std::string own = extensionOf(fileName);
    return std::any_of(choices_.begin(), choices_.end(), [&](const Extensions& wanted) {
        return std::all_of(wanted.begin(), wanted.end(),
                           [&](const std::string& extension) { return extension == own || extension == "*"; });
    });
}

}  // namespace kelvane
