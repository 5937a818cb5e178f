#include "platform/places.h"

#include <array>
#include <cstdlib>
#include <pwd.h>
#include <string_view>
#include <system_error>
#include <unistd.h>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

using std::filesystem::path;

// A relative path would mean another folder in each process.
path absoluteFrom(const char* variable)
{
    const char* text = std::getenv(variable);
    path found = text != nullptr ? path(text) : path();
    return found.is_absolute() ? found : path();
}

path homeOfUser()
{
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return "/";
    return path(entry.pw_dir).is_absolute() ? path(entry.pw_dir) : path("/");
}

path home()
{
    const path own = absoluteFrom("HOME");
    return own.empty() ? homeOfUser() : own;
}

class LinuxPlaces final : public Places {
public:
    path temporaryFolder() const override
    {
        std::error_code error;
        const path own = absoluteFrom("TMPDIR");
        return std::filesystem::is_directory(own, error) ? own : path("/tmp");
    }

    // As the XDG base directory specification says.
    path settingsFolder() const override
    {
        const path own = absoluteFrom("XDG_CONFIG_HOME");
        return own.empty() ? home() / ".config" : own;
    }

    path stateFolder() const override
    {
        const path own = absoluteFrom("XDG_STATE_HOME");
        return own.empty() ? home() / ".local" / "state" : own;
    }

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
