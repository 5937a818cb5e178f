// What the main functions of workers share.
#pragma once

#include <cstdio>
#include <memory>

#include "base/result.h"

namespace kelvane {

enum class WorkerExit : int { served = 0, refused = 1, usage = 2 };

template <class Platform>
[[nodiscard]] WorkerExit runWorker(const char* name, const Result<std::unique_ptr<Platform>>& platform,
                                   bool (&serve)(Platform&))
{
    if (!platform) {
        std::fprintf(stderr, "%s: started by Kelvane itself, not by hand\n", name);
        return WorkerExit::usage;
    }
    return serve(**platform) ? WorkerExit::served : WorkerExit::refused;
}

}  // namespace kelvane
