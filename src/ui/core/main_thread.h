// From the threads of windows to the main thread, where all widgets live.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace kelvane {

// Any thread. Done on the main thread, in the order posted, once its loop comes to it; dropped when the program ends.
void postToMain(std::function<void()> work);
[[nodiscard]] bool isMainThread();

// What a question on the main thread is answered with, once: the first answer counts. Copies are one; an answer that is
// let go without a word counts as the default.
template <class T>
class Answer {
public:
    explicit Answer(T ifNone) : shared_(std::make_shared<Shared>(std::move(ifNone))) {}

    void give(T value) const { shared_->give(std::move(value)); }
    // Waits a short while; nothing as long as there is no answer.
    [[nodiscard]] std::optional<T> await(std::chrono::milliseconds limit) const { return shared_->await(limit); }

    // To be held by whoever answers: when the last hold goes, the default is given.
    class Hold {
    public:
        explicit Hold(const Answer& answer) : answer_(answer) {}
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        ~Hold() { answer_.give(answer_.shared_->ifNone); }
        void give(T value) const { answer_.give(std::move(value)); }

    private:
        const Answer answer_;
    };
    [[nodiscard]] std::shared_ptr<Hold> hold() const { return std::make_shared<Hold>(*this); }

private:
    struct Shared {
        explicit Shared(T none) : ifNone(std::move(none)) {}
        void give(T value)
        {
            const std::lock_guard lock(mutex);
            if (!given)
                given = std::move(value);
            changed.notify_all();
        }
        std::optional<T> await(std::chrono::milliseconds limit)
        {
            std::unique_lock lock(mutex);
            changed.wait_for(lock, limit, [&] { return given.has_value(); });
            return given;
        }
        const T ifNone;
        std::mutex mutex;
        std::condition_variable changed;
        std::optional<T> given;
    };
    std::shared_ptr<Shared> shared_;
};

// Shows a question on the main thread and waits for its answer; `meanwhile` is called some fifty times a second, so
// that a window's thread goes on serving. `show` runs on the main thread and answers through the hold, at once or
// later (never by a nested event loop: dialogs are opened, not executed).
template <class T>
[[nodiscard]] T askOnMain(T ifNone, std::function<void(std::shared_ptr<typename Answer<T>::Hold>)> show,
                          const std::function<void()>& meanwhile)
{
    const Answer<T> answer(std::move(ifNone));
    postToMain([show = std::move(show), hold = answer.hold()] { show(hold); });
    for (;;) {
        if (auto given = answer.await(std::chrono::milliseconds(20)))
            return *std::move(given);
        meanwhile();
    }
}

}  // namespace kelvane
