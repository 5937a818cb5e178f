// What all windows of the desktop program share.
#pragma once

#include <atomic>
#include <functional>
#include <future>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "app/cx_application.h"
#include "engine/engine_options.h"
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
    // Changes them in memory; they are saved at the end, see saveSettings(). `byHand`: the row that a person changed by
    // this and that no save writes otherwise. On any thread.
    void change(const std::function<void(Settings&)>& work, const SettingRow* byHand = nullptr) const;
    // Writes them at once; a failure's text is for the person. On any thread.
    [[nodiscard]] std::u16string saveSettings() const;

    // What reads values goes by: the settings, and the content plug-ins that they list. `complaint` takes why there are
    // none of them, a line for the person. Not on the main thread: the list may be a file, which is read without
    // keeping anybody from the settings.
    [[nodiscard]] EngineOptions engineOptions(const Settings& settings, std::string* complaint = nullptr) const;

    // Takes over what a window that goes has not done with, and what nobody waits for any more: a read of a slow disk.
    // On the main thread.
    void letFinish(std::future<void> work);
    // Waits for all of that; before the application goes.
    void awaitFinished() { finishing_.clear(); }

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
    std::vector<std::future<void>> finishing_;
    mutable std::mutex mutex_;
    std::map<std::thread::id, Workbench*> benches_;
};

}  // namespace kelvane
