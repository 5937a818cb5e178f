// The commands that open a mail to the makers: feedback, and what is left of a crash.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "app/questions.h"
#include "platform/crash_capture.h"
#include "platform/file_system.h"
#include "platform/places.h"
#include "platform/processes.h"

namespace kelvane {

// Where a crash of this version of the program leaves its dump.
[[nodiscard]] std::filesystem::path dumpPath(const Places& places);

// The head of every mail: what the makers need to know of system and program. Lines end with CR LF.
[[nodiscard]] std::u16string configurationBlock(const SystemVersion& system);

// Asks the windows of the program for a sign of life.
class WindowProbe {
public:
    virtual ~WindowProbe() = default;
    // Whether a window other than the caller's lets `patience` pass without an answer; the first such one decides.
    [[nodiscard]] virtual bool someWindowHangs(std::chrono::milliseconds patience) = 0;
};

struct MailPorts {
    const Places& places;
    const SystemFacts& system;
    FileSystem& files;
    Processes& processes;
    CrashCapture& crashes;
};

// Nothing is sent without the person, whose mail program shows the draft. Used on the window's thread; may wait for the
// mail program. What is handed in must outlive this.
class FeedbackMail {
public:
    // `nothingWorked` is called when there is neither a mail program nor anything that opens a mail link.
    FeedbackMail(MailPorts ports, Questions& questions, std::function<void()> nothingWorked);

    void sendFeedback();

    // With the dump of the last crash of this version. When a window hangs a new dump is made of that. Without any dump
    // the status line says so.
    void sendCrash(WindowProbe& windows);

private:
    [[nodiscard]] std::u16string bodyWith(std::u16string_view request) const;
    void send(const MailDraft& draft);

    MailPorts ports_;
    Questions& questions_;
    std::function<void()> nothingWorked_;
};

}  // namespace kelvane
