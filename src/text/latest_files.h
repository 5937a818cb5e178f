// What was read out of the files that were asked about last.
#pragma once

#include <algorithm>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/shell_item.h"

namespace kelvane {

// Which state of which file was read.
struct ReadState {
    NativeString path;
    FileSize size;
    FileTime modified;
    friend bool operator==(const ReadState&, const ReadState&) = default;
};

// The value of one file. Thread-safe.
template <class Value>
class LatestFile {
public:
    explicit LatestFile(ReadState stamp) : stamp_(std::move(stamp)) {}
    [[nodiscard]] const ReadState& stamp() const { return stamp_; }

    // Whoever comes second waits until the first one has read it. Where reading gives nothing, the next one tries.
    template <class Read>
    [[nodiscard]] std::optional<Value> get(Read read)
    {
        const std::lock_guard lock(mutex_);
        if (!value_)
            value_ = read();
        return value_;
    }
    void put(Value value)
    {
        const std::lock_guard lock(mutex_);
        value_ = std::move(value);
    }

private:
    const ReadState stamp_;
    std::mutex mutex_;
    std::optional<Value> value_;
};

// Thread-safe.
template <class Value>
class LatestFiles {
public:
    [[nodiscard]] std::shared_ptr<LatestFile<Value>> of(const ShellItem& item)
    {
        ReadState stamp{item.fullName(), item.info().size, item.info().modified};
        const std::lock_guard lock(mutex_);
        const auto known =
            std::find_if(latest_.begin(), latest_.end(), [&stamp](const auto& file) { return file->stamp() == stamp; });
        if (known != latest_.end()) {
            latest_.splice(latest_.begin(), latest_, known);
        } else {
            latest_.push_front(std::make_shared<LatestFile<Value>>(std::move(stamp)));
            if (latest_.size() > most)
                latest_.pop_back();
        }
        return latest_.front();
    }

private:
    static constexpr std::size_t most = 64;  // more than there are threads that read values
    std::mutex mutex_;
    std::list<std::shared_ptr<LatestFile<Value>>> latest_;
};

}  // namespace kelvane
