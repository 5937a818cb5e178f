// One running instance serves all requests: a second start hands its command line over and ends.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "app/command_text.h"
#include "app/waiting.h"
#include "platform/instance_port.h"

namespace kelvane {

inline constexpr std::string_view instancePortName = "kelvane_CommPort";

// Instances with and without the rights of an administrator never hear of one another.
[[nodiscard]] std::string instancePortNameFor(bool elevated, std::string_view base = instancePortName);

// What travels to an instance: a command line to open, under its show command as the tag, or one of these tags.
namespace port_tag {
inline constexpr std::uint32_t symbolicLink = 0xDEADBEEF;  // "link|target"; the answer is 1 for success
inline constexpr std::uint32_t exit = 0xDEAD0003;          // asks every window to close, and a helper to end
}  // namespace port_tag

namespace port_answer {
inline constexpr std::uint32_t refused = 0;  // also by a process on its way out
inline constexpr std::uint32_t taken = 1;
inline constexpr std::uint32_t hangs = 2;  // it is there, but its main thread takes nothing
}  // namespace port_answer

class CSingleInstanceApp {
public:
    enum class Entry {
        handedOver,   // another instance has the command line: this process is done
        first,        // this process is the instance and holds the port
        withoutPort,  // this process runs beside the instance
    };

    CSingleInstanceApp(InstancePorts& ports, Waiting& waiting) : ports_(ports), waiting_(waiting) {}

    // Hands the command line to the instance, or becomes the instance itself: also when the other one does not answer
    // in time, hangs, or is on its way out. Two starts at one moment end as one instance. `alone` keeps from handing
    // over; the port is taken nevertheless when nobody has it.
    [[nodiscard]] Entry enter(std::string name, const CommandText& text, std::uint32_t showCommand, bool alone,
                              const InstancePorts::Handler& handler);

    // Hears nobody from now on; a handler that is running ends first.
    void leave() { port_.reset(); }

    [[nodiscard]] bool holdsPort() const { return port_ != nullptr; }

private:
    enum class HandOver { done, nobody, refused, failed };

    [[nodiscard]] HandOver handOver(const std::string& name, const PortMessage& message);
    // False when another process came first.
    [[nodiscard]] bool claim(const std::string& name, const InstancePorts::Handler& handler);
    [[nodiscard]] Entry becomeInstance(const std::string& name, const InstancePorts::Handler& handler);

    InstancePorts& ports_;
    Waiting& waiting_;
    std::unique_ptr<InstancePort> port_;
};

}  // namespace kelvane
