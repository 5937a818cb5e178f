#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string_view>
#include <sys/utsname.h>
#include <system_error>
#include <unistd.h>

#include "base/utf.h"
#include "platform/linux/adapters.h"
#include "platform/linux/os_release.h"
#include "platform/places.h"

namespace kelvane {
namespace {

constexpr std::uint32_t usualDpi = 96;
constexpr double largestDpi = 960;  // nothing beyond ten times the usual is taken for an answer

// The first three numbers of "6.1.0-18-amd64"; what is not there stays 0.
void parseRelease(std::string_view release, SystemVersion& version)
{
    for (std::uint32_t* part : {&version.major, &version.minor, &version.build}) {
        const auto [end, error] = std::from_chars(release.data(), release.data() + release.size(), *part);
        if (error != std::errc() || end == release.data() + release.size() || *end != '.')
            return;
        release.remove_prefix(static_cast<std::size_t>(end - release.data()) + 1);
    }
}

std::u16string productName()
{
    for (const char* place : {"/etc/os-release", "/usr/lib/os-release"}) {
        std::ifstream file(place);
        if (file)
            return toUtf16(linux_os::prettyName(std::string(std::istreambuf_iterator<char>(file), {})));
    }
    return u"Linux";
}

// The number in an environment variable times `unit`, 0 when there is none.
double numberFrom(const char* variable, double unit)
{
    const char* text = std::getenv(variable);
    return text != nullptr ? std::strtod(text, nullptr) * unit : 0;
}

bool isProgram(const std::filesystem::path& file)
{
    std::error_code error;
    return std::filesystem::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0;
}

class LinuxSystemFacts final : public SystemFacts {
public:
    SystemVersion version() const override
    {
        SystemVersion version;
        utsname names{};
        if (::uname(&names) == 0)
            parseRelease(names.release, version);
        version.productName = productName();
        return version;
    }

    bool usesDoubleByteCharacters() const override { return false; }
    bool longPathsEnabled() const override { return true; }

    // What the desktop tells its programs by their environment, since the core asks no window system.
    std::uint32_t screenDpi() const override
    {
        for (const double dpi : {numberFrom("QT_FONT_DPI", 1), numberFrom("GDK_SCALE", usualDpi)}) {
            if (dpi >= usualDpi / 2 && dpi <= largestDpi)
                return static_cast<std::uint32_t>(std::lround(dpi));
        }
        return usualDpi;
    }

    std::optional<std::uint32_t> thumbnailSize() const override { return std::nullopt; }

    std::optional<std::filesystem::path> installedProgram(const std::string& name) const override
    {
        const char* variable = std::getenv("PATH");
        std::string_view rest = variable != nullptr ? variable : "";
        if (name.empty() || name.find('/') != std::string::npos)
            return std::nullopt;
        while (!rest.empty()) {
            const std::string_view folder = rest.substr(0, rest.find(':'));
            rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
            const std::filesystem::path file = std::filesystem::path(folder) / name;
            if (file.is_absolute() && isProgram(file))
                return file;
        }
        return std::nullopt;
    }
};

}  // namespace

std::unique_ptr<SystemFacts> makeLinuxSystemFacts()
{
    return std::make_unique<LinuxSystemFacts>();
}

}  // namespace kelvane
