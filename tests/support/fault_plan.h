// Which of many port calls is the one that goes wrong: one counter that any number of wrapped ports share.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/result.h"

namespace kelvane::testing {

enum class Fault {
    none,
    once,        // the n-th operation fails
    afterwards,  // it does its work and tells of a failure nevertheless, as a network file system may
    killed,      // it fails, a write half way, and so does everything after it: nothing can be cleaned up
    witnessed,   // nothing fails, but the action comes right before the operation
};

// Every call of a wrapped port is one operation, counted from 1. One thread at a time.
class FaultPlan {
public:
    void fail(Fault fault, int operation, Error error = {ErrorKind::io, 0, "struck"})
    {
        fault_ = fault;
        at_ = operation;
        count_ = 0;
        error_ = std::move(error);
        struck_.clear();
    }
    // No fault comes any more; what came is still told.
    void stop() { fault_ = Fault::none; }
    // Called when the fault comes, after the half of a write was written; it need not return.
    void onFault(std::function<void()> action) { action_ = std::move(action); }

    [[nodiscard]] int operations() const { return count_; }
    // Whether the operation was reached at all, and its name.
    [[nodiscard]] bool failed() const { return !struck_.empty(); }
    [[nodiscard]] const std::string& struck() const { return struck_; }

    // Does what `real` does, or fails; `torn` is what a killed process still does of it.
    template <class Call, class Torn>
    auto run(std::string_view name, Call&& real, Torn&& torn) -> std::invoke_result_t<Call>
    {
        using Answer = std::invoke_result_t<Call>;
        const bool due = isDue(name);
        if (due && fault_ == Fault::killed && count_ == at_)
            torn();
        if (due && fault_ == Fault::afterwards) {
            Answer answer = real();
            return failedBy(std::move(answer));
        }
        if (!due)
            return real();
        act();
        if constexpr (std::is_constructible_v<Answer, Error>)
            if (fault_ != Fault::witnessed)
                return Answer(error_);
        return real();
    }
    template <class Call>
    auto run(std::string_view name, Call&& real) -> std::invoke_result_t<Call>
    {
        return run(name, std::forward<Call>(real), [] {});
    }

    // What file systems differ in.
    bool canExchange = true;
    bool pretendsToShare = false;  // blocks of equal files count as shared, and nothing is done
    int namesLeft = -1;           // hard links that can be made at all before an error tells of too many; negative: any
    std::uint32_t mostNames = 0;  // of a file, before it has as many as it can; 0: any number

    // Whether flushing asks the device, which takes most of the time of a test and tells nothing while it has power.
    bool reallyFlushes = false;

private:
    [[nodiscard]] bool isDue(std::string_view name)
    {
        const bool due = ++count_ == at_ ? fault_ != Fault::none : fault_ == Fault::killed && count_ > at_;
        if (due && struck_.empty())
            struck_ = name;
        return due;
    }
    void act() const
    {
        if (action_)
            action_();
    }
    template <class Answer>
    [[nodiscard]] Answer failedBy(Answer answer) const
    {
        act();
        if constexpr (std::is_constructible_v<Answer, Error>)
            return Answer(error_);
        else
            return answer;
    }

    Fault fault_ = Fault::none;
    int at_ = 0;
    int count_ = 0;
    Error error_;
    std::string struck_;
    std::function<void()> action_;
};

}  // namespace kelvane::testing
