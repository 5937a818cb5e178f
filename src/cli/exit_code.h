// How the console program ends.
#pragma once

namespace kelvane {

enum class ExitCode : int {
    done = 0,
    incomplete = 1,  // some items failed, or nothing was found where a match was asked for
    usage = 2,       // bad usage or input
    cancelled = 130,
};

}  // namespace kelvane
