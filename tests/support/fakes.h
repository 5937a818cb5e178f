// Small stand-ins for ports, for tests that need to say what the world answers.
#pragma once

#include <atomic>
#include <map>
#include <string>
#include <utility>

#include "platform/clock.h"
#include "platform/priority.h"
#include "platform/property_system.h"
#include "platform/text_folding.h"
#include "support/paths.h"

namespace kelvane::testing {

// Time that stands still until it is told to go on.
class FakeClock final : public Clock {
public:
    std::uint64_t ticks() const override { return milliseconds.load(); }
    FileTime now() const override { return {static_cast<std::int64_t>(milliseconds.load()) * ticksPerMillisecond}; }
    std::atomic<std::uint64_t> milliseconds{0};
};

// Runs the work in place and counts.
class FakePriority final : public Priority {
public:
    void runLowered(const std::function<void()>& work) override
    {
        ++lowered;
        work();
    }
    int lowered = 0;
};

// The system's own folding, to be had as a plain member.
class SimpleFolding final : public TextFolding {
public:
    std::u16string lower(std::u16string_view text) const override { return real_->lower(text); }
    std::u16string withoutAccents(std::u16string_view text) const override { return real_->withoutAccents(text); }

private:
    std::unique_ptr<TextFolding> real_ = makeTextFolding();
};

// Answers property reads from a table of (full path, canonical name), and counts them.
class FakeReaders final : public PropertyReaders {
public:
    RawValue read(const PropertyInfo& property, const ShellItem& item) override
    {
        ++reads;
        const auto found = values_.find({posix(item.path()), std::string(property.name)});
        return found != values_.end() ? found->second : RawValue{};
    }
    void set(const std::string& path, const std::string& property, RawValue value)
    {
        values_[{path, property}] = std::move(value);
    }
    std::atomic<int> reads{0};

private:
    std::map<std::pair<std::string, std::string>, RawValue> values_;
};

}  // namespace kelvane::testing
