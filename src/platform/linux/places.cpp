#include "platform/places.h"

#include <string_view>
#include <system_error>

#include "platform/linux/adapters.h"
#include "platform/linux/xdg_folders.h"

namespace kelvane {
namespace {

using std::filesystem::path;

class LinuxPlaces final : public Places {
public:
    path temporaryFolder() const override
    {
        std::error_code error;
        const path own = linux_os::folderFromVariable("TMPDIR");
        return std::filesystem::is_directory(own, error) ? own : path("/tmp");
    }

    // As the XDG base directory specification says.
    path settingsFolder() const override { return linux_os::xdgFolder("XDG_CONFIG_HOME", ".config"); }

    path stateFolder() const override { return linux_os::xdgFolder("XDG_STATE_HOME", ".local/state"); }

    path cacheFolder() const override { return linux_os::xdgFolder("XDG_CACHE_HOME", ".cache"); }

    path programFile() const override
    {
        std::error_code error;
        const path file = std::filesystem::read_symlink("/proc/self/exe", error);
        // The kernel's mark on a program that was replaced while it runs, by an update for instance.
        constexpr std::string_view mark = " (deleted)";
        const std::string& text = file.native();
        if (text.ends_with(mark) && !std::filesystem::exists(file, error))
            return text.substr(0, text.size() - mark.size());
        return file;
    }
};

}  // namespace

std::unique_ptr<Places> makeLinuxPlaces()
{
    return std::make_unique<LinuxPlaces>();
}

}  // namespace kelvane
