// The serving side of an instance port: a thread that takes messages from a listening socket.
#pragma once

#include <chrono>
#include <poll.h>
#include <thread>
#include <vector>

#include "platform/instance_port.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/local_socket.h"
#include "platform/port_frame.h"

namespace kelvane::linux_os {

// How long a message may take to arrive. It was ready before its sender connected, so more is only needed by a sender
// that means no good or is being debugged.
inline constexpr std::chrono::milliseconds messageTimeLimit{2000};

// Connections that are read at the same time; further ones wait with the system.
inline constexpr std::size_t mostClients = 64;

// Serves until it is destroyed, which waits for a running handler. Calls the handler on its own thread.
class PortServer {
public:
    // Throws std::system_error when the system gives no thread.
    PortServer(FileHandle listening, FileHandle stop, InstancePorts::Handler handler);
    ~PortServer();
    PortServer(const PortServer&) = delete;
    PortServer& operator=(const PortServer&) = delete;

private:
    struct Client {
        FileHandle socket;
        PortPeer peer;
        Deadline deadline;
        PortFrameParser parser;
        bool done = false;
    };

    void run();
    [[nodiscard]] bool waitForWork(std::vector<pollfd>& events) const;
    [[nodiscard]] int pollTime() const;
    void acceptClients();
    void serve(Client& client);
    void answer(Client& client);
    void dropDoneAndLate();

    FileHandle listening_;
    FileHandle stop_;  // an event descriptor
    InstancePorts::Handler handler_;
    std::vector<Client> clients_;
    std::vector<std::byte> buffer_;
    std::thread thread_;  // last: it uses the others
};

}  // namespace kelvane::linux_os
