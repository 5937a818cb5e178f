// What the main functions of workers share.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "base/result.h"

namespace kelvane {

enum class WorkerExit : int { served = 0, refused = 1, usage = 2 };

// Ends the process where it was one of the program's.
template <class Platform>
[[nodiscard]] int runWorker(const char* name, const Result<std::unique_ptr<Platform>>& platform,
                            bool (&serve)(Platform&))
{
    if (!platform) {
        std::fprintf(stderr, "%s: started by Kelvane itself, not by hand\n", name);
        return static_cast<int>(WorkerExit::usage);
    }
    // Nothing is left to be tidied up, and libraries that tidy up all the same may want what the walls refuse.
    std::_Exit(static_cast<int>(serve(**platform) ? WorkerExit::served : WorkerExit::refused));
}

}  // namespace kelvane
