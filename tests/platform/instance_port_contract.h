// What the promises of the instance port are tested on: one world for each version of it.
#pragma once

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

// Defined beside the tests of each system's adapter.
[[nodiscard]] PortWorldMaker systemPortWorld();

}  // namespace kelvane::testing
