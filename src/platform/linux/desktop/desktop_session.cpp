#include "platform/desktop_session.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/linux/desktop/adapters.h"
#include "platform/linux/file_handle.h"

namespace kelvane {
namespace {

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

// `name` begins with a zero byte where it is no file.
bool answers(std::string_view name)
{
    sockaddr_un address{};
    if (name.size() >= sizeof address.sun_path)
        return false;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.data(), name.size());
    const linux_os::FileHandle caller(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    return caller.valid() && ::connect(caller.get(), reinterpret_cast<const sockaddr*>(&address), length) == 0;
}

// ":1" and "unix:1.0" are on this computer, and say at once whether somebody is there. Of another computer's display
// nothing is known without waiting for the network.
bool isX11There(const std::string& display)
{
    const std::size_t colon = display.rfind(':');
    if (colon == std::string::npos)
        return false;
    const std::string host = display.substr(0, colon);
    if (!host.empty() && host != "unix")
        return true;
    std::size_t end = colon + 1;
    while (end < display.size() && std::isdigit(static_cast<unsigned char>(display[end])) != 0)
        ++end;
    const std::string path = "/tmp/.X11-unix/X" + display.substr(colon + 1, end - colon - 1);
    return answers(path) || answers(std::string(1, '\0') + path);
}

bool isWaylandThere(const std::string& display)
{
    if (display.empty())
        return false;
    return answers(display.front() == '/' ? display : variable("XDG_RUNTIME_DIR") + '/' + display);
}

}  // namespace

bool displayIsThere()
{
    // Whoever names a platform of the toolkit knows what they do: tests draw without any screen.
    if (!variable("QT_QPA_PLATFORM").empty())
        return true;
    return isX11There(variable("DISPLAY")) || isWaylandThere(variable("WAYLAND_DISPLAY")) ||
           !variable("WAYLAND_SOCKET").empty();
}

std::unique_ptr<DesktopActivation> makeDesktopActivation()
{
    return makeDBusActivation(sessionBusAddress());
}

}  // namespace kelvane
