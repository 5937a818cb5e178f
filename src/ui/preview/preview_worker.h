// The thread that reads files for previews: neither the main thread nor the window's own waits for a slow disk.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "ui/preview/preview_tools.h"

namespace kelvane {

// Used on the main thread. The platform outlives it. Its end waits for the work that is being done to notice that it
// is not wanted any more: as long as one read of a file takes.
class PreviewWorker {
public:
    using Work = std::function<void(PreviewTools&)>;

    PreviewWorker(Platform& platform, Settings settings);
    ~PreviewWorker();
    PreviewWorker(const PreviewWorker&) = delete;
    PreviewWorker& operator=(const PreviewWorker&) = delete;

    // Done on the thread, after what was posted before.
    void post(Work work);
    // What was posted and has not begun is forgotten, what is being done is cancelled.
    void dropAll();

private:
    void run();
    [[nodiscard]] Work next();

    Platform& platform_;
    const Settings settings_;
    CancelFlag cancel_;  // of the work that is being done
    std::mutex mutex_;
    std::condition_variable posted_;
    std::deque<Work> waiting_;
    bool ending_ = false;
    std::thread thread_;  // begins with the first work
};

}  // namespace kelvane
