#include "app/background_operations.h"

#include <utility>

namespace kelvane {

class BackgroundOperations::Counted final : public Ticket {
public:
    Counted(BackgroundOperations& all, Shown::iterator place) : all_(all), place_(place) {}
    ~Counted() override
    {
        const std::lock_guard lock(all_.mutex_);
        all_.running_.erase(place_);
        all_.changed_.notify_all();
    }

private:
    BackgroundOperations& all_;
    Shown::iterator place_;
};

std::unique_ptr<BackgroundOperations::Ticket> BackgroundOperations::begin(BringToFront show)
{
    const std::lock_guard lock(mutex_);
    return std::make_unique<Counted>(*this, running_.insert(running_.end(), std::move(show)));
}

bool BackgroundOperations::any() const
{
    const std::lock_guard lock(mutex_);
    return !running_.empty();
}

void BackgroundOperations::bringOneToFront() const
{
    BringToFront show;
    {
        const std::lock_guard lock(mutex_);
        if (!running_.empty())
            show = running_.front();
    }
    if (show)
        show();
}

bool BackgroundOperations::awaitNone(std::chrono::milliseconds limit) const
{
    std::unique_lock lock(mutex_);
    return waiting_.until(lock, changed_, limit, [this] { return running_.empty(); });
}

}  // namespace kelvane
