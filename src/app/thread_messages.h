// What the main thread is told by window threads and by the instance port.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <variant>

#include "app/command_line.h"
#include "app/window.h"

namespace kelvane {

// The number under which these messages travel where the system's own queue carries them.
inline constexpr std::uint32_t threadMessage = 0x8001;

enum class ThreadCode : std::uint32_t {
    windowEnded = 1,
    openWindow = 2,
    closeAllWindows = 3,
    commandHandedOver = 4,
    listWindows = 5,
    firstWindowUp = 6,
};

// A window thread has done all but return.
struct WindowEnded {
    InstanceNumber instance = 0;
};

struct OpenWindow {
    CommandLine line;
};

struct CloseAllWindows {};

// Whether the main thread takes something while its sender still waits: one of the two decides, once.
class Pickup {
public:
    // On the main thread; false when the sender has given up.
    [[nodiscard]] bool take();
    // On the sender's; false when it was not taken in time, and then it never will be.
    [[nodiscard]] bool awaitTaken(Waiting& waiting, std::chrono::milliseconds limit);

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool taken_ = false;
    bool givenUp_ = false;
};

// Another process handed its command line over; not parsed yet.
struct CommandHandedOver {
    std::uint32_t showCommand = 0;
    CommandText text;
    std::shared_ptr<Pickup> pickup = nullptr;  // null: nobody waits
};

// Where the handles of all windows are wanted; filled on the main thread, awaited by another one.
class WindowListRequest {
public:
    void answer(WindowHandles windows);
    // Nothing when the main thread is busy for longer than this, or gone.
    [[nodiscard]] std::optional<WindowHandles> await(Waiting& waiting, std::chrono::milliseconds limit);

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<WindowHandles> windows_;
};

struct ListWindows {
    std::shared_ptr<WindowListRequest> request;
};

struct FirstWindowUp {
    InstanceNumber instance = 0;
};

// In the order of their codes.
using ThreadMessage =
    std::variant<WindowEnded, OpenWindow, CloseAllWindows, CommandHandedOver, ListWindows, FirstWindowUp>;

[[nodiscard]] ThreadCode codeOf(const ThreadMessage& message);

// The main thread's queue. Everybody may post; only the main thread takes.
class ThreadMessages {
public:
    // Called after each post, on the posting thread: lets the event loop of a desktop program come and take. To be set
    // before other threads know the queue.
    void setWake(std::function<void()> wake) { wake_ = std::move(wake); }

    // False, and the message dropped, once the queue is closed.
    bool post(ThreadMessage message);

    // Waits for a message; nothing once the queue is closed.
    [[nodiscard]] std::optional<ThreadMessage> take();
    [[nodiscard]] std::optional<ThreadMessage> takeWaiting();  // waits for nothing

    // Closes the queue unless a message came meanwhile, so that none is ever accepted and then lost.
    [[nodiscard]] bool closeIfEmpty();
    void close();

private:
    [[nodiscard]] std::optional<ThreadMessage> takeFirst();  // under the lock

    std::function<void()> wake_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<ThreadMessage> messages_;
    bool closed_ = false;
};

}  // namespace kelvane
