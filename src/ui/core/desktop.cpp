#include "ui/core/desktop.h"

namespace kelvane {

Settings Desktop::settings() const
{
    const std::lock_guard lock(application_->sharedState());
    return application_->settings();
}

void Desktop::change(const std::function<void(Settings&)>& work) const
{
    const std::lock_guard lock(application_->sharedState());
    work(application_->settings());
}

std::u16string Desktop::saveSettings(std::span<const SettingRow* const> byHand) const
{
    const std::lock_guard lock(application_->sharedState());
    const SettingsCode code = application_->save(byHand);
    return code == SettingsCode::done ? std::u16string() : application_->failureText(code);
}

Workbench* Desktop::benchOfThisThread() const
{
    const std::lock_guard lock(mutex_);
    const auto found = benches_.find(std::this_thread::get_id());
    return found != benches_.end() ? found->second : nullptr;
}

void Desktop::setBenchOfThisThread(Workbench* bench)
{
    const std::lock_guard lock(mutex_);
    if (bench != nullptr)
        benches_[std::this_thread::get_id()] = bench;
    else
        benches_.erase(std::this_thread::get_id());
}

}  // namespace kelvane
