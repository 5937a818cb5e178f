// What a program with windows adds to the application core.
#pragma once

#include <memory>
#include <string>

#include "app/command_line.h"
#include "app/questions.h"
#include "app/window.h"

namespace kelvane {

class CXInstance;

// Outlives the application object.
class ApplicationHost {
public:
    virtual ~ApplicationHost() = default;

    // Asks and tells on behalf of whatever thread calls it.
    [[nodiscard]] virtual Questions& questions() = 0;

    // On the main thread, before settings are read: what the windows need of the system. False ends the program with
    // the message that the system is too old.
    [[nodiscard]] virtual bool initialise() { return true; }

    // On the main thread, before the first window: what all windows share, as the options of the command line want it.
    virtual void prepareWindows(const CommandLine& line) { (void)line; }

    // On the thread of the instance; null when no window could be made, which ends the instance.
    [[nodiscard]] virtual std::unique_ptr<Window> makeWindow(CXInstance& instance) = 0;

    // On the main thread, when the first window is there: what start-up has put off until then.
    virtual void firstWindowIsUp() {}

    // On the main thread of an elevated helper that was started with something to do.
    virtual void serveHelperRequest(const std::string& request) { (void)request; }

    // On the thread of a window: neither a mail program nor a browser took a mail to the makers.
    virtual void mailImpossible() {}
};

}  // namespace kelvane
