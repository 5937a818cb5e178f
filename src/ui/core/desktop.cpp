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

std::u16string Desktop::saveSettings() const
{
    const std::lock_guard lock(application_->sharedState());
    const SettingsCode code = application_->save();
    return code == SettingsCode::done ? std::u16string() : application_->failureText(code);
}

}  // namespace kelvane
