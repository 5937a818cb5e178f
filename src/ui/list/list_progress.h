// How far opening, saving or exporting has come: in the status line, so that it covers nothing and takes no keys.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <future>

#include "base/work_count.h"
#include "ui/core/workbench.h"

class QLabel;
class QMainWindow;
class QProgressBar;

namespace kelvane {

// Main thread; owned by the window. Its button cancels the job that runs.
class ListProgressBar final : public QWidget {
    Q_OBJECT

public:
    ListProgressBar(WindowLink& link, QMainWindow& window);

    // Null when the window has none.
    [[nodiscard]] static ListProgressBar* of(const WindowLink& link);
    // Comes up after a moment, so that short work makes nothing flicker.
    void begin(const QString& what);
    // A total of 0: nobody knows.
    void setDone(std::uint64_t done, std::uint64_t total);
    void finish();

private:
    QLabel* counts_;
    QProgressBar* bar_;
    QTimer late_;
};

// On the window's thread, as long as the work lasts.
class ListProgress {
public:
    ListProgress(Workbench& bench, const QString& what);
    ~ListProgress();
    ListProgress(const ListProgress&) = delete;
    ListProgress& operator=(const ListProgress&) = delete;

    // Between the steps of the work, as often as one likes: tells and serves some ten times a second.
    void step(std::uint64_t done, std::uint64_t total);
    // Has the work done on a thread of its own, and serves the window meanwhile. Where there is no thread to be had it
    // is done here.
    template <class Work>
    [[nodiscard]] auto aside(const WorkCount& count, Work work)
    {
        auto result = std::async(std::launch::async | std::launch::deferred, std::move(work));
        while (result.wait_for(servedEvery) == std::future_status::timeout) {
            bench_.serve();
            step(count.done, count.total);
        }
        return result.get();
    }

private:
    static constexpr std::chrono::milliseconds servedEvery{20};

    Workbench& bench_;
    QElapsedTimer told_;
};

}  // namespace kelvane
