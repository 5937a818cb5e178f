// Port: other programs, and what the desktop does on the program's behalf.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/file_info.h"

namespace kelvane {

struct MailDraft {
    std::u16string to;
    std::u16string subject;
    std::u16string body;               // lines end with CR LF
    std::filesystem::path attachment;  // may be empty
};

enum class MailOutcome {
    handedOver,   // a mail program took it
    cancelled,    // the person closed it
    unavailable,  // there is no mail program that takes a draft, or it failed
};

// Thread-safe. Nothing here waits for the started program unless it says so.
class Processes {
public:
    virtual ~Processes() = default;

    [[nodiscard]] virtual Status start(const std::filesystem::path& program,
                                       const std::vector<NativeString>& arguments) = 0;
    // With the rights of an administrator, after the system asked the person; `cancelled` when they said no,
    // `notSupported` where the system cannot.
    [[nodiscard]] virtual Status startElevated(const std::filesystem::path& program,
                                               const std::vector<NativeString>& arguments) = 0;
    // Whether this process has the rights of an administrator.
    [[nodiscard]] virtual bool isElevated() const = 0;

    // Opens a file, or a link in UTF-8 ("https:", "mailto:"), with the program that the desktop has for it.
    [[nodiscard]] virtual Status openFile(const std::filesystem::path& file) = 0;
    [[nodiscard]] virtual Status openLink(const std::string& link) = 0;

    // Shows the draft in the person's mail program; nothing is sent without them. May wait for the mail dialog.
    [[nodiscard]] virtual MailOutcome composeMail(const MailDraft& draft) = 0;

    // Whether the system reports a connection to the internet; true where it does not tell.
    [[nodiscard]] virtual bool isOnline() const = 0;

    // Asks the system to start the program again with these arguments after a crash. A system that cannot is no error.
    virtual void restartAfterCrash(const std::vector<NativeString>& arguments) = 0;
};

}  // namespace kelvane
