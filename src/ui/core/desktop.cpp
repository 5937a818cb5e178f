#include "ui/core/desktop.h"

#include <chrono>
#include <utility>

#include "app/engine_settings.h"

namespace kelvane {

Settings Desktop::settings() const
{
    const std::lock_guard lock(application_->sharedState());
    return application_->settings();
}

void Desktop::change(const std::function<void(Settings&)>& work, const SettingRow* byHand) const
{
    const std::lock_guard lock(application_->sharedState());
    work(application_->settings());
    if (byHand != nullptr)
        application_->changedByHand(*byHand);
}

std::u16string Desktop::saveSettings() const
{
    const std::lock_guard lock(application_->sharedState());
    const SettingsCode code = application_->save();
    return code == SettingsCode::done ? std::u16string() : application_->failureText(code);
}

// A plug-in serves one thread at a time, and windows and previews have several: each gets processes of its own.
EngineOptions Desktop::engineOptions(const Settings& settings, std::string* complaint) const
{
    EngineOptions options = engineOptionsFrom(settings);
    if (auto plugins = application_->contentPlugins(settings))
        options.extraction.plugins = *std::move(plugins);
    else if (complaint != nullptr)
        *complaint = plugins.error().detail;
    options.extraction.worker = options.extraction.worker || !options.extraction.plugins.empty();
    return options;
}

void Desktop::letFinish(std::future<void> work)
{
    using namespace std::chrono_literals;
    std::erase_if(finishing_,
                  [](const std::future<void>& each) { return each.wait_for(0s) == std::future_status::ready; });
    finishing_.push_back(std::move(work));
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
