#include "cli/console.h"

#include <algorithm>
#include <array>
#include <new>
#include <ostream>

#include "base/filled_text.h"
#include "cli/choices.h"
#include "cli/printable.h"
#include "cli/verbs.h"

namespace kelvane {
namespace {

constexpr std::array table = {
    Verb{"scan", TextId::scanSummary, scanVerb},
    Verb{"show", TextId::showSummary, showVerb},
    Verb{"export", TextId::exportSummary, exportVerb},
    Verb{"clean", TextId::cleanSummary, cleanVerb},
    Verb{"undo", TextId::undoSummary, undoVerb},
    Verb{"compare", TextId::compareSummary, compareVerb},
    Verb{"describe", TextId::describeSummary, describeVerb},
    Verb{"ignore", TextId::ignoreSummary, ignoreVerb},
    Verb{"settings", TextId::settingsSummary, settingsVerb},
};

void printHelp(std::ostream& stream)
{
    stream << filledText(TextId::programAbout) << "\n\n"
           << filledText(TextId::usageLine, {"VERB [OPTIONS] ..."}) << "\n\n"
           << filledText(TextId::verbsHeading) << '\n';
    for (const Verb& verb : verbs())
        stream << "  " << verb.name << std::string(12 - verb.name.size(), ' ') << filledText(verb.summary) << '\n';
    stream << '\n'
           << filledText(TextId::optionsHeading) << "\n  -h, --help  " << filledText(TextId::programHelpHelp)
           << "\n  --version   " << filledText(TextId::programVersionHelp) << "\n\n"
           << filledText(TextId::examplesHeading)
           << "\n"
              "  kelvane-cli scan --save copies.ikvs ~/Pictures\n"
              "  kelvane-cli show copies.ikvs --sort=-size\n"
              "  kelvane-cli clean copies.ikvs --keep oldest --dry-run\n"
              "  kelvane-cli undo --list\n"
              "  kelvane-cli compare a.txt b.txt\n"
              "  kelvane-cli describe a.txt\n"
              "  kelvane-cli settings list\n"
           << '\n'
           << filledText(TextId::exitCodes) << '\n';
}

ExitCode runUnknown(const std::string& word, const Console& console)
{
    std::vector<std::string> names;
    for (const Verb& verb : verbs())
        names.emplace_back(verb.name);
    return refuse(console,
                  unknownWord(word.starts_with("-") ? TextId::unknownOption : TextId::unknownVerb, word, names));
}

ExitCode dispatch(const Arguments& arguments, Platform& platform, const Console& console)
{
    if (arguments.empty()) {
        printHelp(console.err);
        return ExitCode::usage;
    }
    const std::string& word = arguments.front();
    if (word == "--help" || word == "-h") {
        printHelp(console.out);
        return ExitCode::done;
    }
    if (word == "--version") {
        console.out << "kelvane-cli " << KELVANE_VERSION << '\n';
        return ExitCode::done;
    }
    const auto verb = std::find_if(table.begin(), table.end(), [&](const Verb& known) { return known.name == word; });
    if (verb == table.end())
        return runUnknown(word, console);
    return verb->run({arguments.begin() + 1, arguments.end()}, platform, console);
}

// A reader that has seen enough closes its pipe; that is no failure of ours. Anything else lost results.
ExitCode afterOutput(ExitCode code, const Console& console)
{
    console.out.flush();
    if (console.out.good() || code == ExitCode::cancelled)
        return code;
    const std::error_code failure = console.outputFailure ? console.outputFailure() : std::error_code{};
    if (failure == std::errc::broken_pipe)
        return code;
    complain(console, filledText(TextId::cannotWriteResults) + (failure ? ": " + failure.message() : std::string{}));
    return std::max(code, ExitCode::incomplete);
}

}  // namespace

std::span<const Verb> verbs() noexcept
{
    return table;
}

void complain(const Console& console, std::string_view message)
{
    console.err << "kelvane-cli: " << printable(message) << '\n';
}

void complainOf(const std::vector<std::string>& messages, const Console& console)
{
    for (const std::string& message : messages)
        complain(console, message);
}

ExitCode refuse(const Console& console, std::string_view message)
{
    complain(console, message);
    return ExitCode::usage;
}

ExitCode stopCancelled(const Console& console)
{
    complain(console, filledText(TextId::problemCancelled));
    return ExitCode::cancelled;
}

std::string helpHint(std::string_view verb)
{
    return filledText(TextId::helpSaysMore, {verb});
}

ExitCode runConsole(const Arguments& arguments, Platform& platform, const Console& console)
{
    try {
        return afterOutput(dispatch(arguments, platform, console), console);
    } catch (const std::bad_alloc&) {
        complain(console, filledText(TextId::outOfMemory));
        return ExitCode::incomplete;
    }
}

}  // namespace kelvane
