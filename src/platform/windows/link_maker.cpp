#include "platform/link_maker.h"

#include "platform/windows/adapters.h"
#include "platform/windows/symbolic_link.h"
#include "platform/windows/system_path.h"

namespace kelvane {
namespace {

class WindowsLinkMaker final : public LinkMaker {
public:
    Status makeSymbolicLink(const std::filesystem::path& link, const std::filesystem::path& target,
                            bool toFolder) override
    {
        return windows_os::createSymbolicLink(windows_os::systemPath(link), target, toFolder);
    }
};

}  // namespace

std::unique_ptr<LinkMaker> makeWindowsLinkMaker()
{
    return std::make_unique<WindowsLinkMaker>();
}

}  // namespace kelvane
