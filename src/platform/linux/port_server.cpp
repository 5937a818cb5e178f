#include "platform/linux/port_server.h"

#include <algorithm>
#include <sys/eventfd.h>
#include <sys/socket.h>

namespace kelvane::linux_os {
namespace {

using std::chrono::steady_clock;

constexpr std::size_t readAtOnce = 65'536;

// The order in what is polled; clients follow.
constexpr std::size_t stopEvent = 0;
constexpr std::size_t listeningEvent = 1;
constexpr std::size_t firstClientEvent = 2;

}  // namespace

PortServer::PortServer(FileHandle listening, FileHandle stop, InstancePorts::Handler handler)
    : listening_(std::move(listening)),
      stop_(std::move(stop)),
      handler_(std::move(handler)),
      buffer_(readAtOnce),
      thread_([this] { run(); })
{
}

PortServer::~PortServer()
{
    ::eventfd_write(stop_.get(), 1);
    thread_.join();
}

void PortServer::run()
{
    std::vector<pollfd> events;
    while (waitForWork(events)) {
        for (std::size_t i = firstClientEvent; i < events.size(); ++i) {
            if (events[i].revents != 0)
                serve(clients_[i - firstClientEvent]);
        }
        dropDoneAndLate();
        if (events[listeningEvent].revents != 0)
            acceptClients();
    }
}

// False at the end.
bool PortServer::waitForWork(std::vector<pollfd>& events) const
{
    const short accepting = clients_.size() < mostClients ? POLLIN : 0;
    events = {{stop_.get(), POLLIN, 0}, {listening_.get(), accepting, 0}};
    for (const Client& client : clients_)
        events.push_back({client.socket.get(), POLLIN, 0});
    const int ready = uninterrupted([&] { return ::poll(events.data(), events.size(), pollTime()); });
    return ready >= 0 && events[stopEvent].revents == 0;
}

int PortServer::pollTime() const
{
    const auto first = std::min_element(clients_.begin(), clients_.end(),
                                        [](const Client& a, const Client& b) { return a.deadline < b.deadline; });
    return first == clients_.end() ? -1 : millisecondsUntil(first->deadline);
}

void PortServer::acceptClients()
{
    while (clients_.size() < mostClients) {
        FileHandle socket(
            uninterrupted([&] { return ::accept4(listening_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK); }));
        if (!socket.valid()) {
            // Without descriptors the connection stays in the queue, and would wake this thread at once again.
            if (errno != EAGAIN && errno != ECONNABORTED)
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            return;
        }
        if (const auto peer = peerOfSameUser(socket))
            clients_.push_back({std::move(socket),
                                {static_cast<std::uint64_t>(*peer)},
                                steady_clock::now() + messageTimeLimit,
                                {},
                                false});
    }
}

// One piece a turn, so that nobody who sends much keeps the others waiting.
void PortServer::serve(Client& client)
{
    const ssize_t got =
        uninterrupted([&] { return ::recv(client.socket.get(), buffer_.data(), buffer_.size(), MSG_DONTWAIT); });
    if (got < 0 && errno == EAGAIN)
        return;
    client.done = got <= 0;
    if (client.done)
        return;
    const auto state = client.parser.take(std::span(buffer_).first(static_cast<std::size_t>(got)));
    client.done = state != PortFrameParser::State::incomplete;
    if (state == PortFrameParser::State::complete)
        answer(client);
}

void PortServer::answer(Client& client)
{
    const auto from = steady_clock::now();
    const auto bytes = frameAnswer(handler_(client.parser.takeMessage(), client.peer));
    // A sender that did not wait is no fault, and so few bytes always fit.
    (void)::send(client.socket.get(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    // The others could not be heard meanwhile.
    for (Client& other : clients_)
        other.deadline += steady_clock::now() - from;
}

void PortServer::dropDoneAndLate()
{
    const auto now = steady_clock::now();
    std::erase_if(clients_, [&](const Client& client) { return client.done || client.deadline <= now; });
}

}  // namespace kelvane::linux_os
