// The promises of the instance port: one suite, run on the adapter of each system.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/instance_port.h"

namespace kelvane::testing {

// What another process was answered.
using Elsewhere = Result<std::uint32_t>;

// Names that nobody else uses, and more than one process where there are processes.
class PortWorld {
public:
    virtual ~PortWorld() = default;
    virtual InstancePorts& ports() = 0;
    [[nodiscard]] virtual std::uint64_t ownProcess() const = 0;

    // Does it in another process and waits for that one's end; nothing in a world of one process. A claim gives 0.
    [[nodiscard]] virtual std::optional<Elsewhere> claimElsewhere(const std::string& name) = 0;
    [[nodiscard]] virtual std::optional<Elsewhere> sendElsewhere(const std::string& name,
                                                                 const PortMessage& message) = 0;
};

struct PortWorldMaker {
    std::string name;
    std::function<std::unique_ptr<PortWorld>()> make;
};

inline const std::string portName = "kelvane_CommPort";

// Far more than anything takes that goes well.
inline constexpr std::chrono::seconds portPatience{20};

inline std::vector<std::byte> portBytes(std::size_t count)
{
    std::vector<std::byte> made(count);
    for (std::size_t i = 0; i < count; ++i)
        made[i] = static_cast<std::byte>(i * 7 + i / 256);
    return made;
}

inline void PrintTo(const PortWorldMaker& maker, std::ostream* out)
{
    *out << maker.name;
}

// The suite's tests stand in instance_port_contract_test.cpp; the test of each system's adapter instantiates it.
class InstancePortContract : public ::testing::TestWithParam<PortWorldMaker> {
protected:
    InstancePorts& ports() { return world_->ports(); }

    std::unique_ptr<InstancePort> claim(InstancePorts::Handler handler, const std::string& name = portName)
    {
        auto claimed = ports().claim(name, std::move(handler));
        EXPECT_TRUE(claimed.ok());
        return claimed ? std::move(*claimed) : nullptr;
    }

    Result<std::uint32_t> send(std::uint32_t tag, std::size_t size = 0,
                               std::chrono::milliseconds timeout = portPatience)
    {
        return ports().send(portName, {tag, portBytes(size)}, timeout);
    }

    std::unique_ptr<PortWorld> world_ = GetParam().make();
};

}  // namespace kelvane::testing
