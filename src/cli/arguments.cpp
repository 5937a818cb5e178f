#include "cli/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <ostream>

#include "base/filled_text.h"
#include "cli/choices.h"

namespace kelvane {
namespace {

constexpr std::size_t optionColumn = 30;

// "Usage: kelvane-cli scan [OPTIONS] ROOT...": positionals are checked after the options, so that a mistyped option is
// named before a missing file is; CLI11 therefore takes them for optional and would show them so.
class UsageFormatter final : public CLI::Formatter {
public:
    explicit UsageFormatter(std::string_view positionals) : positionals_(positionals) { column_width(optionColumn); }
    std::string make_usage(const CLI::App* app, std::string /*name*/) const override
    {
        return filledText(TextId::usageLine, {app->get_name() + " [OPTIONS] " + positionals_}) + '\n';
    }

private:
    std::string positionals_;
};

std::vector<std::string> optionNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const auto& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

std::optional<std::string> leftoverMessage(const CLI::App& app)
{
    const std::vector<std::string> rest = app.remaining();
    const auto first = std::find_if(rest.begin(), rest.end(), [](const std::string& word) { return word != "--"; });
    if (first == rest.end())
        return std::nullopt;
    const std::string& word = *first;
    if (word.starts_with("-"))
        return unknownWord(TextId::unknownOption, word.substr(0, word.find('=')), optionNames(app));
    return filledText(TextId::oneArgumentTooMany, {word});
}

void replaceOnce(std::string& text, std::string_view from, const std::string& to)
{
    if (const auto at = text.find(from); at != std::string::npos)
        text.replace(at, from.size(), to);
}

// CLI11 parts its groups by two empty lines, where one is enough, and has two headings of its own.
std::string helpText(const CLI::App& app)
{
    std::string text = app.help();
    replaceOnce(text, "\nPositionals:\n", '\n' + filledText(TextId::argumentsHeading) + '\n');
    replaceOnce(text, "\nOptions:\n", '\n' + filledText(TextId::optionsHeading) + '\n');
    for (auto at = text.find("\n\n\n"); at != std::string::npos; at = text.find("\n\n\n", at))
        text.erase(at, 1);
    return text;
}

std::vector<std::string> reversed(const Arguments& arguments)
{
    return {arguments.rbegin(), arguments.rend()};
}

}  // namespace

std::string footerText(const HelpFooter& footer)
{
    std::string words;
    if (footer.notes)
        words = filledText(*footer.notes) + '\n';
    words += '\n' + filledText(TextId::examplesHeading) + '\n' + std::string(footer.examples);
    if (footer.last)
        words += '\n' + filledText(*footer.last) + '\n';
    return words + '\n' + filledText(TextId::exitCodes) + '\n';
}

std::string notEmpty(const std::string& value)
{
    return value.empty() ? filledText(TextId::valueNeeded) : "";
}

std::optional<std::string> notOneFile(std::string_view verb, const std::vector<std::string>& words)
{
    if (words.empty() || words.front().empty())
        return filledText(TextId::needsSavedScan, {verb}) + helpHint(verb);
    if (words.size() > 1)
        return filledText(TextId::oneArgumentTooMany, {words[1]});
    return std::nullopt;
}

std::optional<ExitCode> parseArguments(CLI::App& app, std::string_view positionals, const Arguments& arguments,
                                       const Console& console)
{
    app.formatter(std::make_shared<UsageFormatter>(positionals));
    app.set_help_flag("-h,--help", filledText(TextId::helpHelp));
    app.allow_extras();
    app.allow_windows_style_options(false);
    try {
        app.parse(reversed(arguments));
    } catch (const CLI::CallForHelp&) {
        console.out << helpText(app);
        return ExitCode::done;
    } catch (const CLI::ParseError& error) {
        return refuse(console, error.what());
    }
    if (const auto message = leftoverMessage(app))
        return refuse(console, *message);
    return std::nullopt;
}

}  // namespace kelvane
