#include "app/thread_messages.h"

#include <type_traits>
#include <utility>

namespace kelvane {
namespace {

template <ThreadCode code, class Message>
constexpr bool carries =
    std::is_same_v<std::variant_alternative_t<static_cast<std::size_t>(code) - 1, ThreadMessage>, Message>;

static_assert(carries<ThreadCode::windowEnded, WindowEnded> && carries<ThreadCode::openWindow, OpenWindow> &&
              carries<ThreadCode::closeAllWindows, CloseAllWindows> &&
              carries<ThreadCode::commandHandedOver, CommandHandedOver> &&
              carries<ThreadCode::listWindows, ListWindows> && carries<ThreadCode::firstWindowUp, FirstWindowUp>);

}  // namespace

ThreadCode codeOf(const ThreadMessage& message)
{
    return static_cast<ThreadCode>(message.index() + 1);
}

bool Pickup::take()
{
    const std::lock_guard lock(mutex_);
    taken_ = !givenUp_;
    changed_.notify_all();
    return taken_;
}

bool Pickup::awaitTaken(Waiting& waiting, std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex_);
    givenUp_ = !waiting.until(lock, changed_, limit, [this] { return taken_; });
    return !givenUp_;
}

void WindowListRequest::answer(WindowHandles windows)
{
    const std::lock_guard lock(mutex_);
    windows_ = std::move(windows);
    changed_.notify_all();
}

std::optional<WindowHandles> WindowListRequest::await(Waiting& waiting, std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex_);
    if (!waiting.until(lock, changed_, limit, [this] { return windows_.has_value(); }))
        return std::nullopt;
    return windows_;
}

bool ThreadMessages::post(ThreadMessage message)
{
    std::function<void()> wake;
    {
        const std::lock_guard lock(mutex_);
        if (closed_)
            return false;
        messages_.push_back(std::move(message));
        wake = wake_;
        // Under the lock: the message may be the last one, and this object gone as soon as it is taken.
        changed_.notify_all();
    }
    if (wake)
        wake();
    return true;
}

std::optional<ThreadMessage> ThreadMessages::take()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return closed_ || !messages_.empty(); });
    return takeFirst();
}

std::optional<ThreadMessage> ThreadMessages::takeWaiting()
{
    const std::lock_guard lock(mutex_);
    return takeFirst();
}

std::optional<ThreadMessage> ThreadMessages::takeFirst()
{
    if (messages_.empty())
        return std::nullopt;
    auto message = std::move(messages_.front());
    messages_.pop_front();
    return message;
}

bool ThreadMessages::closeIfEmpty()
{
    const std::lock_guard lock(mutex_);
    closed_ = closed_ || messages_.empty();
    return closed_;
}

void ThreadMessages::close()
{
    const std::lock_guard lock(mutex_);
    closed_ = true;
    messages_.clear();
    changed_.notify_all();
}

}  // namespace kelvane
