// Port: how the desktop asks the running program for something (a click on its icon, "open with" in a file manager).
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/file_info.h"

namespace kelvane {

// The word with which the desktop starts the program when it is not running: the first window waits for the request
// that follows. A command line takes it for a switch without a meaning.
inline constexpr const char* desktopServiceSwitch = "--desktop-service";

// One request, as a command line of its own would have it.
struct DesktopRequest {
    std::vector<NativeString> words;  // without the program's name; none: just show yourself
    std::string activationToken;      // lets the new window take the foreground; may be empty
};

// An action of the program's icon ("new-window") and what it means.
struct DesktopAction {
    std::string name;
    std::vector<NativeString> words;
};

// Serves requests until it is destroyed, which waits for a running handler.
class DesktopService {
public:
    virtual ~DesktopService() = default;
};

// Thread-safe.
class DesktopActivation {
public:
    virtual ~DesktopActivation() = default;

    // Runs on a thread of the service's own, one call at a time, once for each file that the desktop wants opened. The
    // desktop waits meanwhile. Must not throw.
    using Handler = std::function<void(DesktopRequest request)>;

    // `notSupported` where no desktop is there to ask, `changed` when another process serves it already. Either is no
    // fault: the program runs as well without.
    [[nodiscard]] virtual Result<std::unique_ptr<DesktopService>> serve(std::vector<DesktopAction> actions,
                                                                        Handler handler) = 0;
};

}  // namespace kelvane
