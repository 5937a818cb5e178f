// The desktop program in a test: real windows on the offscreen platform, over a home of its own.
#pragma once

#include <QAction>
#include <QApplication>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/own_trash.h"
#include "support/temp_tree.h"
#include "support/ui/home_platform.h"
#include "ui/core/desktop_host.h"
#include "ui/core/window_link.h"
#include "ui/frame/main_window.h"

namespace kelvane::testing {

// How long a test waits for what must come; a computer that is busy with other work is no failure.
inline constexpr std::chrono::milliseconds patience{20'000};

// Gives the loop of events its turn until the condition holds; false when it never does.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = patience);

// What a world is to be before it starts.
struct WorldPlan {
    InterfaceMode mode = InterfaceMode::advanced;
    std::vector<std::string> words{};              // of the command line, without the program's name
    std::function<void(Settings&)> change{};       // settings that an earlier run left behind
    std::shared_ptr<MemorySettingsStore> kept{};   // a store of an earlier world; filled again at the end
    bool firstRun = false;                         // no settings at all, the mode is asked for
    std::function<void(const TempTree&)> files{};  // what is there before the start
};

// Sees every box that is shown: a name with markup in it has to stand there as it is, whoever made the box.
class PlainBoxes final : public QObject {
public:
    PlainBoxes() { qApp->installEventFilter(this); }

private:
    bool eventFilter(QObject* object, QEvent* event) override;
};

// One after the other, on the thread of the QApplication. Starts the program and waits for the first window; at its end
// all windows are closed.
class DesktopWorld {
public:
    explicit DesktopWorld(const WorldPlan& plan = {});
    ~DesktopWorld();
    DesktopWorld(const DesktopWorld&) = delete;
    DesktopWorld& operator=(const DesktopWorld&) = delete;

    TempTree tree;  // for the files of the test, in "files", and for its home
    HomePlatform platform{tree.path()};

    [[nodiscard]] Desktop& desktop() { return desktop_; }
    [[nodiscard]] CXApplication& application() { return *application_; }
    [[nodiscard]] Questions& questions() { return host_.questions(); }
    [[nodiscard]] MainWindow& window() const { return *window_; }
    [[nodiscard]] WindowLink& link() const { return window_->link(); }
    // All frames that are shown.
    [[nodiscard]] static std::vector<MainWindow*> windows();
    // Opens a further window, which window() and what follows are about from now on.
    MainWindow& openWindow();
    void use(MainWindow& window) { window_ = &window; }
    // Asks for a window's end and waits for it.
    void closeWindow(MainWindow& window);

    // A widget or action by its object name; null when there is none. The first one of the window, dialogs included.
    template <class T>
    [[nodiscard]] T* find(const char* name) const
    {
        return window_->findChild<T*>(QString::fromLatin1(name));
    }
    // Gives a command as a menu does; false when it is unknown or disabled.
    bool trigger(const char* name) const;
    // Waits for a dialog of this name to be shown.
    template <class T = QWidget>
    [[nodiscard]] T* await(const char* name) const
    {
        T* found = nullptr;
        static_cast<void>(waitUntil([&] { return (found = find<T>(name)) != nullptr && found->isVisible(); }));
        return found;
    }

    // Writes the files, each with its contents, and fills the list with them: one group a list of names. Waits until
    // the main thread knows the rows. Names are relative to "files" in the tree.
    void loadList(const std::vector<std::vector<std::string>>& groups, const std::string& contents = "the same");
    // Does the work on the window's thread and waits for it, and for what it changed to have arrived here.
    void onWindowThread(const std::function<void(Workbench&)>& work);
    // The same for a value.
    template <class T>
    [[nodiscard]] T ask(const std::function<T(Workbench&)>& question)
    {
        std::optional<T> answer;
        onWindowThread([&](Workbench& bench) { answer = question(bench); });
        return *std::move(answer);
    }

private:
    void start(const WorldPlan& plan);
    void saveFirst(const WorldPlan& plan);

    PlainBoxes plainBoxes_;
    OwnTrash trash_{tree.path("trash")};
    std::unique_ptr<Waiting> waiting_ = makeWaiting();
    std::shared_ptr<MemorySettingsStore> kept_;
    Desktop desktop_{platform};
    DesktopHost host_{desktop_};
    std::unique_ptr<CXApplication> application_;
    bool over_ = false;  // the last window is gone
    MainWindow* window_ = nullptr;
};

}  // namespace kelvane::testing
