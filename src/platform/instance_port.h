// Port: how one running instance of the program is found and spoken to by another.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace kelvane {

struct PortMessage {
    std::uint32_t tag = 0;
    std::vector<std::byte> bytes;  // at most largestPortMessage
};

// Command lines are short; whoever sends more means no good.
inline constexpr std::size_t largestPortMessage = 1'048'576;

// The process at the other end, as the system vouches for it.
struct PortPeer {
    std::uint64_t process = 0;
};

// A claimed name: messages are served until this is destroyed, which waits for a running handler.
class InstancePort {
public:
    virtual ~InstancePort() = default;
};

// Names are the program's own ("kelvane_CommPort"), and belong to one user on one desktop. Only processes of the same
// user are heard; messages that are malformed or too long are dropped without harm. Thread-safe.
class InstancePorts {
public:
    virtual ~InstancePorts() = default;

    // Runs on a thread of the port's own, one call at a time; gives the answer that the sender receives. Must not
    // throw.
    using Handler = std::function<std::uint32_t(PortMessage message, const PortPeer& peer)>;

    // Takes the name. `changed` when another process holds it (it came first, also by an instant), `accessDenied` when
    // somebody else's process does. What a crashed process left behind is taken over.
    [[nodiscard]] virtual Result<std::unique_ptr<InstancePort>> claim(std::string_view name, Handler handler) = 0;

    // Hands the message to the holder of the name and waits for its answer. `notFound` when nobody holds it. The holder
    // may take the foreground while it answers.
    [[nodiscard]] virtual Result<std::uint32_t> send(std::string_view name, const PortMessage& message,
                                                     std::chrono::milliseconds timeout) = 0;

    // Whether a process holds the name now.
    [[nodiscard]] virtual bool isHeld(std::string_view name) = 0;
};

}  // namespace kelvane
