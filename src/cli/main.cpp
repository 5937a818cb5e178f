#include <algorithm>
#include <iostream>

#include "cli/console.h"
#include "cli/output_stream.h"

int main(int count, char** words)
{
    using namespace kelvane;
    const auto platform = makePlatform();
    CancelFlag cancel;
    const auto watch = platform->interrupts().watch(cancel);
    OutputStream out(stdout);
    const Console console{out, std::cerr, cancel, platform->terminal().columns(StandardStream::errors),
                          [&out] { return out.failure(); }};
    return static_cast<int>(runConsole({words + std::min(count, 1), words + count}, *platform, console));
}
