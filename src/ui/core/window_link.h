// The half of a results window that lives on the main thread: widgets use it to speak to the window's own thread.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>

#include "ui/core/box_queue.h"
#include "ui/core/row_mirror.h"
#include "ui/core/workbench.h"

namespace kelvane {

// Main thread only. Owns the frame's widget; both are gone some time after end().
class WindowLink final : public QObject {
    Q_OBJECT

public:
    // Makes the frame and shows it.
    [[nodiscard]] static WindowLink* open(Desktop& desktop, std::shared_ptr<CXInstance> instance, Workbench& bench);
    ~WindowLink() override;

    [[nodiscard]] Desktop& desktop() const { return desktop_; }
    [[nodiscard]] const RowMirror& rows() const { return rows_; }
    [[nodiscard]] Job job() const { return job_; }
    // The parent for dialogs.
    [[nodiscard]] QWidget* frame() const { return frame_; }
    // For questions and messages, of which a window shows one at a time.
    [[nodiscard]] BoxQueue& boxes() { return boxes_; }
    [[nodiscard]] const CommandLine& commandLine() const { return instance_->commandLine(); }

    // Does the work on the window's thread, in the order posted, also between the items of a job. What it captures must
    // not be a widget: it answers through Workbench::toMain(). Dropped once the window is closing.
    void run(std::function<void(Workbench&)> work);
    // The same for work on items of the list in view, which mean other files in the next list: dropped where that has
    // begun by then.
    void runOn(ListNumber list, std::function<void(Workbench&)> work);
    void runOnList(std::function<void(Workbench&)> work) { runOn(list_, std::move(work)); }
    // Which list rows() belongs to. To be kept with items that are used later.
    [[nodiscard]] ListNumber list() const { return list_; }
    // Asks the window's thread for something, and takes the answer on the main thread, as long as `receiver` is there.
    template <class Question, class Take>
    void fetch(QObject* receiver, Question question, Take take)
    {
        run(asking(receiver, std::move(question), std::move(take)));
    }
    // The same for a question about items of the list in view; there is no answer where another list has begun by then.
    template <class Question, class Take>
    void fetchOfList(QObject* receiver, Question question, Take take)
    {
        runOnList(asking(receiver, std::move(question), std::move(take)));
    }
    // Stops the job that runs, at once: not a work of the queue.
    void cancelJob();
    // The person wants the window to close, and agreed to stop the job that runs.
    void requestClose();

Q_SIGNALS:
    // The list. While rowsPatched() is sent, rows() is the new one; `before` rows from `first` on are `after` rows now.
    void rowsAboutToBePatched(kelvane::Row first, kelvane::Row before, kelvane::Row after);
    void rowsPatched(kelvane::Row first, kelvane::Row before, kelvane::Row after);
    void figuresChanged();  // counts and sums
    void listBegan();       // another list: other columns, another definition
    void jobChanged(kelvane::Job job);
    void closeAsked();                     // the person wants the window to close: what runs for itself ends
    void statusTold(const QString& text);  // a short text for the status line
    // The row that keyboard and mouse are at, and the rows that previews and details show.
    void currentRowChanged();
    void optionsChanged();                   // the settings in memory are others now
    void helpWanted(const QString& anchor);  // a place of the user guide, "toc_clean"; empty: its beginning
    void logged(const QString& line);        // a line for the log of this run
    void itemWanted(kelvane::ItemId item);   // somebody wants the list's view to go to this item
    // What the program was started with, once the frame stands; also files dropped on it.
    void openRequested(const std::filesystem::path& savedScan);
    void foldersRequested(const std::vector<std::filesystem::path>& folders);

public:
    // The item that the person is at; nothing in an empty list. Set by the list's view.
    [[nodiscard]] std::optional<ItemId> currentItem() const { return current_; }
    void setCurrentItem(std::optional<ItemId> item);

    // For the other half.
    void take(RowPatch patch);
    void beginList(ListNumber list);
    void end();

private:
    WindowLink(Desktop& desktop, std::shared_ptr<CXInstance> instance, Workbench& bench);

    template <class Question, class Take>
    [[nodiscard]] static std::function<void(Workbench&)> asking(QObject* receiver, Question question, Take take)
    {
        return [target = QPointer<QObject>(receiver), question = std::move(question),
                take = std::move(take)](Workbench& bench) mutable {
            auto answer = std::make_shared<decltype(question(bench))>(question(bench));
            bench.toMain([target = std::move(target), answer = std::move(answer), take = std::move(take)](WindowLink&) {
                if (target)
                    take(std::move(*answer));
            });
        };
    }

    Desktop& desktop_;
    std::shared_ptr<CXInstance> instance_;
    Workbench& bench_;  // touched on its own thread alone
    RowMirror rows_;
    ListNumber list_{};
    Job job_ = Job::none;
    std::optional<ItemId> current_;
    QPointer<QWidget> frame_;
    BoxQueue boxes_;
};

}  // namespace kelvane
