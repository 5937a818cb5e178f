// kelvane-link-helper FOLDER: makes symbolic links in the folder for the program that started it through polkit, which
// talks to it over standard input. Not meant to be started by hand.
#include <cstdio>
#include <unistd.h>

#include "platform/linux/link_helper/link_server.h"

namespace kelvane::linux_os {
namespace {

enum class End : int { served = 0, refused = 1, usage = 2 };

End run(int count, char** words)
{
    if (count != 2) {
        std::fputs("usage: kelvane-link-helper FOLDER, started by Kelvane itself\n", stderr);
        return End::usage;
    }
    auto caller = Caller::of(STDIN_FILENO);
    if (!caller) {
        std::fputs("kelvane-link-helper: serves only the program that started it through polkit\n", stderr);
        return End::refused;
    }
    auto server = LinkServer::make(std::move(*caller), words[1]);
    if (!server) {
        std::fputs("kelvane-link-helper: no links are made in this folder\n", stderr);
        return End::refused;
    }
    return server->serve(STDIN_FILENO) ? End::served : End::refused;
}

}  // namespace
}  // namespace kelvane::linux_os

int main(int count, char** words)
{
    return static_cast<int>(kelvane::linux_os::run(count, words));
}
