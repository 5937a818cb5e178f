#include "platform/held_files.h"

#include <cerrno>

#include "platform/linux/adapters.h"
#include "platform/linux/held_folder.h"

namespace kelvane {
namespace {

class LinuxHeldFiles final : public HeldFiles {
public:
    Result<std::unique_ptr<HeldFolder>> openFolder(const std::filesystem::path& folder) override
    {
        return linux_os::openHeldFolder(folder, volumes_);
    }

    bool isTooManyLinks(const Error& error) const override { return error.systemCode == EMLINK; }

private:
    std::shared_ptr<linux_os::Volumes> volumes_ = std::make_shared<linux_os::Volumes>();
};

}  // namespace

std::unique_ptr<HeldFiles> makeLinuxHeldFiles()
{
    return std::make_unique<LinuxHeldFiles>();
}

}  // namespace kelvane
