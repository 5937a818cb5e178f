#include "cli/console.h"

#include <algorithm>
#include <array>
#include <new>
#include <ostream>

#include "cli/choices.h"
#include "cli/printable.h"
#include "cli/verbs.h"

namespace kelvane {
namespace {

constexpr std::array table = {
    Verb{"scan", "find duplicates in folders and print the groups", scanVerb},
    Verb{"compare", "say stage by stage why two files match or not", compareVerb},
    Verb{"describe", "print what is known of a file", describeVerb},
    Verb{"settings", "list, read, write, export or import the settings", settingsVerb},
};

void printHelp(std::ostream& stream)
{
    stream << "Kelvane finds duplicate files. It reads files; it never changes one.\n\n"
              "Usage: kelvane-cli VERB [OPTIONS] ...\n\nVerbs:\n";
    for (const Verb& verb : verbs())
        stream << "  " << verb.name << std::string(12 - verb.name.size(), ' ') << verb.summary << '\n';
    stream << "\nOptions:\n"
              "  -h, --help  print this text; after a verb, print the verb's own options\n"
              "  --version   print the version\n"
              "\nExamples:\n"
              "  kelvane-cli scan ~/Pictures\n"
              "  kelvane-cli compare a.txt b.txt\n"
              "  kelvane-cli describe a.txt\n"
              "  kelvane-cli settings list\n"
           << exitCodeHelp;
}

ExitCode runUnknown(const std::string& word, const Console& console)
{
    std::vector<std::string> names;
    for (const Verb& verb : verbs())
        names.emplace_back(verb.name);
    return refuse(console, unknownWord(word.starts_with("-") ? "option" : "verb", word, names));
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
    complain(console, "cannot write the results" + (failure ? ": " + failure.message() : std::string{}));
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

ExitCode refuse(const Console& console, std::string_view message)
{
    complain(console, message);
    return ExitCode::usage;
}

ExitCode stopCancelled(const Console& console)
{
    complain(console, "cancelled");
    return ExitCode::cancelled;
}

ExitCode runConsole(const Arguments& arguments, Platform& platform, const Console& console)
{
    try {
        return afterOutput(dispatch(arguments, platform, console), console);
    } catch (const std::bad_alloc&) {
        complain(console, "out of memory");
        return ExitCode::incomplete;
    }
}

}  // namespace kelvane
