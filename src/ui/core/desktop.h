// What all windows of the desktop program share.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <span>
#include <thread>

#include "app/cx_application.h"
#include "platform/platform.h"
#include "results/mark_wizard.h"
#include "ui/core/desktop_memory.h"

namespace kelvane {

class Workbench;

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
    // Layouts and sizes of windows. On the main thread.
    DesktopMemory memory;

    // The window that the calling thread belongs to; null on any other thread.
    [[nodiscard]] Workbench* benchOfThisThread() const;
    // Each workbench tells of itself, null at its end.
    void setBenchOfThisThread(Workbench* bench);

    // Whether an administrator's process may make symbolic links: answered once in a run of the program, in any window.
    std::atomic<bool> elevationDeclined{false}, elevationAccepted{false};

private:
    Platform& platform_;
    CXApplication* application_ = nullptr;
    mutable std::mutex mutex_;
    std::map<std::thread::id, Workbench*> benches_;
};

}  // namespace kelvane
