// The half of a results window that lives on the window's own thread: the list, and everything that is done with it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/cx_instance.h"
#include "base/cancel.h"
#include "results/quick_filter.h"
#include "results/results_model.h"
#include "results/stored_marks.h"
#include "ui/core/desktop.h"
#include "ui/core/list_feed.h"
#include "ui/core/list_session.h"
#include "ui/core/main_thread.h"

namespace kelvane {

class WindowLink;

// Long work of which a window does one at a time.
enum class Job { none, scanning, loading, saving, cleaning, undoing };

// Lists of a window, one after the other. An item's id says which file it is within one of them only.
enum class ListNumber : std::uint32_t {};

// Posted work comes from the main thread (WindowLink::run()) and ends here. While a job runs it calls serve() between
// its items, which lets short work in between: ticks, sorting, texts of cells.
class Workbench final : public Window {
public:
    // Makes the other half on the main thread.
    Workbench(CXInstance& instance, Desktop& desktop);
    ~Workbench() override;
    Workbench(const Workbench&) = delete;
    Workbench& operator=(const Workbench&) = delete;

    [[nodiscard]] Desktop& desktop() { return desktop_; }
    [[nodiscard]] Platform& platform() { return desktop_.platform(); }
    [[nodiscard]] CXInstance& instance() { return instance_; }

    [[nodiscard]] ResultsModel& results() { return results_; }
    [[nodiscard]] StoredMarks& storedMarks() { return storedMarks_; }
    // Null before the first list.
    [[nodiscard]] ListSession* session() { return session_.get(); }
    // Of the session's list; null without one.
    [[nodiscard]] QuickFilter* filter() { return filter_.get(); }
    // Empties the list and goes on with another session.
    ListSession& beginList(Settings settings, EngineOptions options);
    // The list goes by these options from now on.
    void followOptions(const Settings& settings);
    // The one that results() holds.
    [[nodiscard]] ListNumber list() const { return list_; }

    // Jobs. The flag is that of the job that runs; a new job resets it.
    [[nodiscard]] Job job() const { return job_; }
    [[nodiscard]] CancelFlag& cancel() { return cancel_; }
    // Null while another one runs. Tells the main thread of begin and end, and closes the window at the end when that
    // was asked for meanwhile.
    class Running {
    public:
        explicit Running(Workbench& bench) : bench_(bench) {}
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        ~Running() { bench_.endJob(); }

    private:
        Workbench& bench_;
    };
    [[nodiscard]] std::unique_ptr<Running> begin(Job job);
    // Between the items of long work: sends what changed, and does what was posted. Cheap when there is nothing.
    void serve();
    // Sends what changed of the list. What is posted is let be: short work that let it in would be entered once more by
    // each work that waits.
    void sendChanges();

    // To the main thread, in order; `work` is dropped when the frame is gone. Sends what changed of the list first.
    void toMain(std::function<void(WindowLink&)> work);
    // A question to the person: `show` runs on the main thread, see askOnMain(); the default when the frame is gone.
    template <class T>
    [[nodiscard]] T ask(T ifNone, std::function<void(WindowLink&, std::shared_ptr<typename Answer<T>::Hold>)> show)
    {
        return askOnMain<T>(
            std::move(ifNone),
            [this, show = std::move(show)](std::shared_ptr<typename Answer<T>::Hold> hold) {
                if (WindowLink* const link = linkOnMain())
                    show(*link, std::move(hold));
            },
            [this] { serve(); });
    }
    // A short text for the status line.
    void tell(std::u16string_view status);
    // A line for the log of this run, which status texts reach by themselves.
    void log(std::u16string_view line);

    // Cancels a job that runs, and closes when it has ended.
    void closeRequested() override;
    // The same after the person agreed to stop what goes on.
    void closeAgreed();
    [[nodiscard]] bool isClosing() const { return closing_; }
    // A job that asks before it stops need not ask any more.
    [[nodiscard]] bool stopIsAgreed() const { return stopAgreed_; }

private:
    struct Slot;

    [[nodiscard]] WindowLink* linkOnMain();
    void endJob();

    CXInstance& instance_;
    Desktop& desktop_;
    ResultsModel results_;
    StoredMarks storedMarks_;
    CancelFlag cancel_;
    const CancelFlag reading_;  // never set: values of the list are wanted as long as it is there
    std::unique_ptr<ListSession> session_;
    std::unique_ptr<QuickFilter> filter_;
    ListFeed feed_;
    std::shared_ptr<Slot> slot_;  // of the other half
    ListNumber list_{};
    Job job_ = Job::none;
    bool closing_ = false;
    bool stopAgreed_ = false;
};

}  // namespace kelvane
