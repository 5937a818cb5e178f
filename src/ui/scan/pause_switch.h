// Holds a running scan up.
#pragma once

#include <atomic>

namespace kelvane {

// Any thread. What reading threads have begun is still done; nothing new is decided while the switch is on.
class PauseSwitch {
public:
    void set(bool on) noexcept { on_.store(on); }
    [[nodiscard]] bool isOn() const noexcept { return on_.load(); }

private:
    std::atomic<bool> on_{false};
};

}  // namespace kelvane
