#include "app/desktop_requests.h"

#include <chrono>
#include <utility>

#include "app/command_text.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::chrono::seconds timeLimit{5};

// The desktop names no folder, and the paths that it gives are absolute.
CommandText commandTextOf(const DesktopRequest& request)
{
    std::vector<std::string> words{"kelvane"};
    for (const NativeString& word : request.words)
        words.push_back(bytesFromNative(word));
    return commandTextFromWords(std::move(words), std::filesystem::path("/"));
}

}  // namespace

DesktopActivation::Handler handOverRequests(InstancePorts& ports, std::string portName, std::uint32_t showCommand)
{
    return [&ports, name = std::move(portName), showCommand](const DesktopRequest& request) {
        static_cast<void>(ports.send(name, {showCommand, encodeHandOver(commandTextOf(request))}, timeLimit));
    };
}

}  // namespace kelvane
