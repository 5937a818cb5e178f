// The thread that reads files for previews: neither the main thread nor the window's own waits for a slow disk.
#pragma once

#include <functional>
#include <future>
#include <memory>

#include "ui/preview/preview_tools.h"

namespace kelvane {

// Used on the main thread. The desktop outlives it. Its end waits for nothing: what is being done is cancelled and left
// to the desktop.
class PreviewWorker {
public:
    using Work = std::function<void(PreviewTools&)>;

    explicit PreviewWorker(Desktop& desktop);
    ~PreviewWorker();
    PreviewWorker(const PreviewWorker&) = delete;
    PreviewWorker& operator=(const PreviewWorker&) = delete;

    // Done on the thread, after what was posted before. What it captures may outlive this.
    void post(Work work);
    // What was posted and has not begun is forgotten, what is being done is cancelled.
    void dropAll();
    // The settings changed: later work goes by them.
    void renewTools();

private:
    struct State;

    Desktop& desktop_;
    const std::shared_ptr<State> state_;  // shared with the thread
    std::future<void> thread_;            // begins with the first work
};

}  // namespace kelvane
