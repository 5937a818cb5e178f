#include "app/command_text.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::string_view blanks = " \t";

bool isBlank(char c)
{
    return blanks.find(c) != std::string_view::npos;
}

std::string_view withoutLeadingBlanks(std::string_view text)
{
    text.remove_prefix(std::min(text.size(), text.find_first_not_of(blanks)));
    return text;
}

std::string_view trimmed(std::string_view text)
{
    return withoutLeadingBlanks(text.substr(0, text.find_last_not_of(blanks) + 1));
}

// The program's name as the line begins with it, its quotation marks included.
std::string_view programPart(std::string_view line)
{
    if (!line.starts_with('"'))
        return line.substr(0, line.find_first_of(blanks));
    const auto closing = line.find('"', 1);
    return closing == std::string_view::npos ? line : line.substr(0, closing + 1);
}

// Reads one argument after another.
class WindowsSplitter {
public:
    explicit WindowsSplitter(std::string_view text) : text_(text) {}

    std::optional<std::string> next()
    {
        text_ = withoutLeadingBlanks(text_);
        if (text_.empty())
            return std::nullopt;
        word_.clear();
        quoted_ = false;
        while (!text_.empty() && (quoted_ || !isBlank(text_.front())))
            takePiece();
        return std::move(word_);
    }

private:
    void takePiece()
    {
        const auto backslashes = std::min(text_.size(), text_.find_first_not_of('\\'));
        text_.remove_prefix(backslashes);
        if (text_.starts_with('"')) {
            word_.append(backslashes / 2, '\\');
            takeQuotationMark(backslashes % 2 == 1);
        } else if (backslashes > 0) {
            word_.append(backslashes, '\\');
        } else {
            takePlain(1);
        }
    }

    void takeQuotationMark(bool escaped)
    {
        if (escaped) {
            takePlain(1);
        } else if (quoted_ && text_.starts_with("\"\"")) {
            text_.remove_prefix(1);
            takePlain(1);
        } else {
            quoted_ = !quoted_;
            text_.remove_prefix(1);
        }
    }

    void takePlain(std::size_t count)
    {
        word_ += text_.substr(0, count);
        text_.remove_prefix(count);
    }

    std::string_view text_;
    std::string word_;
    bool quoted_ = false;
};

std::string quotedForWindows(std::string_view word)
{
    if (!word.empty() && word.find_first_of(" \t\"") == std::string_view::npos)
        return std::string(word);
    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (const char c : word) {
        if (c == '"')
            quoted.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(backslashes, '\\') + '"';
}

}  // namespace

std::vector<std::string> splitWindowsArguments(std::string_view line)
{
    const std::string_view program = programPart(line);
    const bool quoted = program.starts_with('"');
    std::vector<std::string> words{std::string(quoted ? program.substr(1, program.find('"', 1) - 1) : program)};
    WindowsSplitter splitter(line.substr(program.size()));
    while (auto word = splitter.next())
        words.push_back(*std::move(word));
    return words;
}

std::string joinWindowsArguments(const std::vector<std::string>& words)
{
    std::string line = words.empty() ? "" : '"' + words.front() + '"';
    for (std::size_t i = 1; i < words.size(); ++i)
        line += ' ' + quotedForWindows(words[i]);
    return line;
}

CommandText commandTextFromWords(std::vector<std::string> words, std::filesystem::path folder, CommandSyntax syntax)
{
    if (syntax == CommandSyntax::windows)
        return {syntax, joinWindowsArguments(words), {}, std::move(folder)};
    return {syntax, {}, std::move(words), std::move(folder)};
}

std::vector<std::string> argumentsOf(const CommandText& text)
{
    auto words = text.syntax == CommandSyntax::windows ? splitWindowsArguments(text.line) : text.words;
    if (!words.empty())
        words.erase(words.begin());
    return words;
}

std::string argumentTextOf(const CommandText& text)
{
    if (text.syntax == CommandSyntax::windows)
        return std::string(trimmed(std::string_view(text.line).substr(programPart(text.line).size())));
    std::string all;
    for (const auto& word : argumentsOf(text))
        all += (all.empty() ? "" : " ") + word;
    return all;
}

std::vector<std::byte> encodeHandOver(const CommandText& text)
{
    const std::string folder = bytesFromNative(text.folder.native());
    if (text.syntax == CommandSyntax::windows)
        return encodePortTexts({text.line, folder}, text.syntax);
    std::vector<std::string> texts{folder};
    texts.insert(texts.end(), text.words.begin(), text.words.end());
    return encodePortTexts(texts, text.syntax);
}

Result<CommandText> decodeHandOver(std::span<const std::byte> bytes, CommandSyntax syntax)
{
    auto texts = decodePortTexts(bytes, syntax);
    const bool windows = syntax == CommandSyntax::windows;
    if (!texts || texts->size() < (windows ? 1u : 2u) || (windows && texts->size() > 2))
        return Error{ErrorKind::invalid, 0, "a hand-over that is no command line"};
    if (windows)
        return CommandText{
            syntax, texts->front(), {}, texts->size() == 2 ? nativeFromBytes(texts->back()) : NativeString{}};
    return CommandText{syntax, {}, {texts->begin() + 1, texts->end()}, nativeFromBytes(texts->front())};
}

}  // namespace kelvane
