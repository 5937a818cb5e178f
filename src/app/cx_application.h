// The application object: one for each process, from its first step to its last.
#pragma once

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "app/application_host.h"
#include "app/application_ports.h"
#include "app/background_operations.h"
#include "app/cx_instance.h"
#include "app/link_helper_client.h"
#include "app/link_request.h"
#include "app/registry_access.h"
#include "app/shutdown_actions.h"
#include "app/single_instance_app.h"
#include "app/thread_messages.h"
#include "app/version_info.h"

namespace kelvane {

namespace exit_status {
inline constexpr int done = 0;  // also when another instance took the command line, or no window could be opened
inline constexpr int systemTooOld = 100;
}  // namespace exit_status

// Owns the settings, the port, and the list of window instances. The thread that makes it is the main thread: it alone
// touches the list, and dispatches what other threads post. A toolkit that has a main loop of its own calls start(),
// lets setWake() bring it to dispatchWaiting(), and ends with shutDown(); run() is all of these.
class CXApplication : public CAppVersionInfo, public CRegistryAccess, public CSingleInstanceApp {
public:
    // `portBase` is another name for tests only.
    CXApplication(const ApplicationPorts& ports, SettingsPorts settings, ApplicationHost& host,
                  std::string_view portBase = instancePortName);
    ~CXApplication();

    // Gives the exit status of the process.
    [[nodiscard]] int run(const CommandText& text, std::uint32_t showCommand);

    // Everything up to the first window. A value ends the process with it, and nothing has to be shut down.
    [[nodiscard]] std::optional<int> start(const CommandText& text, std::uint32_t showCommand);
    void setWake(std::function<void()> wake) { messages_.setWake(std::move(wake)); }
    // False when the last window is gone.
    [[nodiscard]] bool dispatchWaiting();
    // Saves (or erases) the settings and takes leave of everybody. No window opens any more.
    void shutDown();

    [[nodiscard]] std::size_t windowCount() const { return instances_.size(); }

    // What follows may be called on any thread.

    // Opens, closes and lists windows by way of the main thread. False when the program is ending.
    bool post(ThreadMessage message) { return messages_.post(std::move(message)); }
    // All windows; nothing when the main thread does not answer in time.
    [[nodiscard]] std::optional<WindowHandles> windows(std::chrono::milliseconds limit);

    // Work that outlives its window registers here.
    [[nodiscard]] BackgroundOperations& background() { return background_; }
    [[nodiscard]] ShutdownActions& atShutdown() { return shutdownActions_; }
    // Symbolic links with an administrator's rights, where elevated processes hear this one's messages.
    [[nodiscard]] SymbolicLinkService& linkHelper() { return linkHelper_; }
    // At the end the settings are erased instead of saved.
    void requestErase() { eraseRequested_.store(true); }
    // Guards the settings while there are windows.
    [[nodiscard]] std::mutex& sharedState() { return sharedState_; }

    // The commands of the help menu, on a window's thread.
    void sendFeedback();
    void sendCrashMail();
    void lookForUpdates();

private:
    // Steps of start().
    [[nodiscard]] Entry enterAsInstance(const CommandText& text, std::uint32_t showCommand);
    [[nodiscard]] bool initialise();
    void loadSettings();
    [[nodiscard]] bool serveFirstCommand();
    [[nodiscard]] CommandLine parse(const CommandText& text, std::uint32_t showCommand);
    [[nodiscard]] bool exists(const std::filesystem::path& path);

    // On the thread of the port.
    [[nodiscard]] std::uint32_t answer(const PortMessage& message);
    [[nodiscard]] std::uint32_t acceptCommand(const PortMessage& message);

    // On the main thread.
    void dispatch(ThreadMessage message);
    void act(const WindowEnded& ended);
    void act(OpenWindow& wanted);
    void act(const CloseAllWindows&);
    void act(const CommandHandedOver& handedOver);
    void act(const ListWindows& wanted);
    void act(const FirstWindowUp&);
    bool openWindow(CommandLine line);
    [[nodiscard]] bool mayLeave();
    [[nodiscard]] WindowHandles handles();
    [[nodiscard]] InstanceContext instanceContext();
    void eraseSettings();

    // On the threads of windows.
    void showFirstPrompts(const CXInstance& instance);
    void withSettingsCopy(const std::function<void(Settings&)>& work);
    [[nodiscard]] std::u16string settingsFailure();

    const ApplicationPorts ports_;
    ApplicationHost& host_;
    const std::string portBase_;
    const std::thread::id mainThread_ = std::this_thread::get_id();
    ThreadMessages messages_;
    BackgroundOperations background_;
    ShutdownActions shutdownActions_;
    LinkRequests linkRequests_;
    LinkHelperClient linkHelper_;
    std::mutex sharedState_;
    CommandLine firstLine_;
    std::list<std::shared_ptr<CXInstance>> instances_;  // the youngest first
    InstanceNumber lastNumber_ = 0;
    std::atomic<int> openLoops_{0};
    std::atomic<bool> eraseRequested_{false};
    std::atomic<bool> looping_{false};  // the main thread dispatches, or is about to
    bool starting_ = true;              // no window is up yet
    bool shuttingDown_ = false;
};

}  // namespace kelvane
