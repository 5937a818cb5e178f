// The elevated helper itself: makes symbolic links for the one process that started it, in one folder, and nothing
// else.
#pragma once

#include <optional>
#include <string>

#include "platform/linux/file_handle.h"
#include "platform/linux/link_helper/caller.h"
#include "platform/linux/link_helper/link_message.h"

namespace kelvane::linux_os {

class LinkServer {
public:
    // Nothing when the folder is none that links may be made in: not absolute and plain, a folder of the system, behind
    // a link, or not to be listed by the caller.
    [[nodiscard]] static std::optional<LinkServer> make(Caller caller, const std::string& folder);

    // Answers on the socket (datagrams; its other end is the caller's) until the caller leaves or goes away. Ends at
    // once, with false, when anybody else speaks, when the first message brings no secret, or when a later one does not
    // repeat it.
    [[nodiscard]] bool serve(int socket);

    // One request that is known to be the caller's.
    [[nodiscard]] LinkAnswer makeLink(const std::string& link, const std::string& target) const;

private:
    struct Place {
        FileHandle folder;
        std::string name;
    };

    LinkServer(Caller caller, FileHandle folder) : caller_(std::move(caller)), folder_(std::move(folder)) {}

    [[nodiscard]] std::optional<Place> seenByCaller(const std::string& link, const std::string& target) const;
    [[nodiscard]] LinkAnswer carryOut(const LinkRequest& request) const;
    [[nodiscard]] bool accepts(const LinkRequest& request);

    Caller caller_;
    FileHandle folder_;
    std::optional<LinkSecret> secret_;
};

}  // namespace kelvane::linux_os
