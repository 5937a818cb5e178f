// kelvane-worker: takes documents apart for the program that started it. Not meant to be started by hand.
#include <cstdio>

#include "worker/worker_tasks.h"

namespace kelvane {
namespace {

enum class End : int { served = 0, refused = 1, usage = 2 };

End run(int count, char** words)
{
    const auto platform = makeWorkerPlatform(count, words);
    if (!platform) {
        std::fputs("kelvane-worker: started by Kelvane itself, not by hand\n", stderr);
        return End::usage;
    }
    return serveRequests(**platform) ? End::served : End::refused;
}

}  // namespace
}  // namespace kelvane

int main(int count, char** words)
{
    return static_cast<int>(kelvane::run(count, words));
}
