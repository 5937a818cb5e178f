// Symbolic links by way of the elevated helper, which is this program started with more rights.
#pragma once

#include <atomic>
#include <mutex>
#include <string>

#include "app/single_instance_app.h"
#include "app/waiting.h"
#include "platform/instance_port.h"
#include "platform/places.h"
#include "platform/processes.h"
#include "platform/symbolic_link_service.h"

namespace kelvane {

// For systems whose elevated processes share the ports of the person's own; the ports must outlive it. One request
// after the other.
class LinkHelperClient final : public SymbolicLinkService {
public:
    LinkHelperClient(InstancePorts& ports, Processes& processes, const Places& places, Waiting& waiting,
                     std::string portName = instancePortNameFor(true));

    [[nodiscard]] Status make(const std::filesystem::path& link, const std::filesystem::path& target) override;

    // When this process started the helper: tells it to end, and waits no longer than a moment.
    void endHelper();

private:
    [[nodiscard]] Status ensureHelper();

    InstancePorts& ports_;
    Processes& processes_;
    const Places& places_;
    Waiting& waiting_;
    const std::string portName_;
    std::mutex mutex_;
    bool startedHelper_ = false;  // guarded by mutex_
};

}  // namespace kelvane
