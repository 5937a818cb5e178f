#include "platform/link_maker.h"

#include <cerrno>
#include <unistd.h>

#include "platform/linux/adapters.h"
#include "platform/linux/os_error.h"

namespace kelvane {
namespace {

class PosixLinkMaker final : public LinkMaker {
public:
    // Links to folders are like any others.
    Status makeSymbolicLink(const std::filesystem::path& link, const std::filesystem::path& target, bool) override
    {
        return ::symlink(target.c_str(), link.c_str()) == 0 ? Status() : linux_os::osError(errno);
    }
};

}  // namespace

std::unique_ptr<LinkMaker> makePosixLinkMaker()
{
    return std::make_unique<PosixLinkMaker>();
}

}  // namespace kelvane
