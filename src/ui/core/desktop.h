// What all windows of the desktop program share.
#pragma once

#include <functional>
#include <mutex>
#include <span>

#include "app/cx_application.h"
#include "platform/platform.h"
#include "results/mark_wizard.h"

namespace kelvane {

// Thread-safe where it says so. The platform and the application outlive the windows.
class Desktop {
public:
    explicit Desktop(Platform& platform) : platform_(platform) {}
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    // Once, before the first window.
    void setApplication(CXApplication& application) { application_ = &application; }

    [[nodiscard]] Platform& platform() const { return platform_; }
    [[nodiscard]] CXApplication& application() const { return *application_; }

    // A copy of the settings; on any thread.
    [[nodiscard]] Settings settings() const;
    // Changes them in memory; they are saved at the end, see saveSettings(). On any thread.
    void change(const std::function<void(Settings&)>& work) const;
    // Writes them at once, and with them the rows that nothing else writes; a failure's text is for the person. On any
    // thread.
    [[nodiscard]] std::u16string saveSettings(std::span<const SettingRow* const> byHand = {}) const;

    // What outlives a mark wizard. Used by one wizard at a time, on the main thread.
    MarkWizardMemory wizard;

private:
    Platform& platform_;
    CXApplication* application_ = nullptr;
};

}  // namespace kelvane
