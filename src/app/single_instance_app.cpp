#include "app/single_instance_app.h"

#include <chrono>
#include <utility>

namespace kelvane {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds handOverLimit{5'000};
// An instance that is on its way out lets go of its port soon.
constexpr milliseconds retryPause{100};
constexpr int attempts = 50;

}  // namespace

std::string instancePortNameFor(bool elevated, std::string_view base)
{
    return std::string(base) + (elevated ? "G" : "");
}

CSingleInstanceApp::HandOver CSingleInstanceApp::handOver(const std::string& name, const PortMessage& message)
{
    const auto answer = ports_.send(name, message, handOverLimit);
    if (answer.ok() && answer.value() == port_answer::refused)
        return HandOver::refused;
    if (answer.ok())
        return answer.value() == port_answer::hangs ? HandOver::failed : HandOver::done;
    return answer.error().kind == ErrorKind::notFound ? HandOver::nobody : HandOver::failed;
}

bool CSingleInstanceApp::claim(const std::string& name, const InstancePorts::Handler& handler)
{
    auto port = ports_.claim(name, handler);
    if (!port.ok())
        return port.error().kind != ErrorKind::changed;
    port_ = std::move(port).value();
    return true;
}

CSingleInstanceApp::Entry CSingleInstanceApp::becomeInstance(const std::string& name,
                                                             const InstancePorts::Handler& handler)
{
    // A hung instance still has the port, and then this process goes without.
    (void)claim(name, handler);
    return holdsPort() ? Entry::first : Entry::withoutPort;
}

CSingleInstanceApp::Entry CSingleInstanceApp::enter(std::string name, const CommandText& text,
                                                    std::uint32_t showCommand, bool alone,
                                                    const InstancePorts::Handler& handler)
{
    const PortMessage message{showCommand, encodeHandOver(text)};
    for (int attempt = 0; attempt < attempts && !alone; ++attempt) {
        const HandOver outcome = handOver(name, message);
        if (outcome == HandOver::done)
            return Entry::handedOver;
        if (outcome == HandOver::failed)
            break;
        if (outcome == HandOver::nobody && claim(name, handler))
            return holdsPort() ? Entry::first : Entry::withoutPort;
        // The instance is leaving, or somebody came first by an instant: whoever has the port next is asked again.
        waiting_.pause(retryPause);
    }
    return becomeInstance(name, handler);
}

}  // namespace kelvane
