#include <iostream>

#include "cli/console.h"
#include "cli/language.h"
#include "cli/output_stream.h"
#include "platform/program_arguments.h"
#include "platform/standard_streams.h"

namespace kelvane {
namespace {

ExitCode runProgram(const Arguments& arguments)
{
    const auto platform = makePlatform();
    CancelFlag cancel;
    const auto watch = platform->interrupts().watch(cancel);
    chooseLanguage(*platform);
    OutputStream out(stdout);
    Console console{out, std::cerr, cancel, platform->terminal().columns(StandardStream::errors),
                    [&out] { return out.failure(); }};
    if (console.errorColumns && platform->terminal().isInteractive()) {
        console.ask = [&](std::string_view question) {
            std::cerr << question << std::flush;
            return platform->terminal().readLine(cancel);
        };
    }
    return runConsole(arguments, *platform, console);
}

}  // namespace
}  // namespace kelvane

int main(int count, char** words)
{
    kelvane::reserveStandardStreams();
    return static_cast<int>(kelvane::runProgram(kelvane::programArguments(count, words)));
}
