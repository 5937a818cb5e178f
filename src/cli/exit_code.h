// How the console program ends.
#pragma once

namespace kelvane {

enum class ExitCode : int {
    done = 0,
    incomplete = 1,  // some items failed, or nothing was found where a match was asked for
    usage = 2,       // bad usage or input
    cancelled = 130,
};

inline constexpr const char* exitCodeHelp = "\nExit codes:\n"
                                            "  0    done\n"
                                            "  1    done, but some items failed, or files asked to match do not\n"
                                            "  2    bad usage or input\n"
                                            "  130  cancelled (Ctrl-C; a second one ends the program at once)\n";

}  // namespace kelvane
