#include "app/waiting.h"

#include <thread>

namespace kelvane {
namespace {

class RealWaiting final : public Waiting {
public:
    bool until(std::unique_lock<std::mutex>& lock, std::condition_variable& changed, std::chrono::milliseconds limit,
               const std::function<bool()>& ready) override
    {
        return changed.wait_for(lock, limit, ready);
    }

    void pause(std::chrono::milliseconds time) override { std::this_thread::sleep_for(time); }
};

}  // namespace

std::unique_ptr<Waiting> makeWaiting()
{
    return std::make_unique<RealWaiting>();
}

}  // namespace kelvane
