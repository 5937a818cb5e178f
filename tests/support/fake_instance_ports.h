// Instance ports in memory: several applications in one test process hear one another.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/instance_port.h"

namespace kelvane::testing {

// All applications of a test share one. The handler runs on the sender's thread.
class FakeInstancePorts final : public InstancePorts {
public:
    Result<std::unique_ptr<InstancePort>> claim(std::string_view name, Handler handler) override
    {
        const std::lock_guard lock(mutex_);
        ++claims;
        if (const auto foreign = foreign_.find(std::string(name)); foreign != foreign_.end())
            return Error{foreign->second, 0, {}};
        const auto end = std::make_shared<End>(std::move(handler));
        if (!ends_.emplace(name, end).second)
            return Error{ErrorKind::changed, 0, {}};
        return std::unique_ptr<InstancePort>(std::make_unique<Claimed>(*this, std::string(name), end));
    }

    Result<std::uint32_t> send(std::string_view name, const PortMessage& message,
                               std::chrono::milliseconds timeout) override
    {
        std::shared_ptr<End> end;
        {
            const std::lock_guard lock(mutex_);
            sent.emplace_back(message.tag, timeout.count());
            if (sendFailure)
                return Error{*sendFailure, 0, {}};
            const auto found = ends_.find(name);
            if (found == ends_.end())
                return Error{ErrorKind::notFound, 0, {}};
            end = found->second;
        }
        const std::lock_guard serving(end->mutex);
        return end->handler ? Result<std::uint32_t>(end->handler(message, {}))
                            : Result<std::uint32_t>(Error{ErrorKind::notFound, 0, {}});
    }

    bool isHeld(std::string_view name) override
    {
        const std::lock_guard lock(mutex_);
        return ends_.contains(name);
    }

    // From now on somebody holds the name whom claim() meets so.
    void holdFor(const std::string& name, ErrorKind answer) { foreign_[name] = answer; }

    std::optional<ErrorKind> sendFailure;                      // of a holder that hangs
    std::vector<std::pair<std::uint32_t, std::int64_t>> sent;  // tags and time limits
    int claims = 0;

private:
    struct End {
        explicit End(Handler served) : handler(std::move(served)) {}
        std::mutex mutex;
        Handler handler;
    };

    class Claimed final : public InstancePort {
    public:
        Claimed(FakeInstancePorts& ports, std::string name, std::shared_ptr<End> end)
            : ports_(ports), name_(std::move(name)), end_(std::move(end))
        {
        }
        ~Claimed() override
        {
            {
                const std::lock_guard lock(ports_.mutex_);
                ports_.ends_.erase(name_);
            }
            const std::lock_guard serving(end_->mutex);
            end_->handler = nullptr;
        }

    private:
        FakeInstancePorts& ports_;
        const std::string name_;
        const std::shared_ptr<End> end_;
    };

    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<End>, std::less<>> ends_;
    std::map<std::string, ErrorKind> foreign_;
};

}  // namespace kelvane::testing
