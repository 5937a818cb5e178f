#include "ui/core/window_link.h"

#include <QWidget>

#include "ui/frame/main_window.h"

namespace kelvane {

WindowLink* WindowLink::open(Desktop& desktop, std::shared_ptr<CXInstance> instance, Workbench& bench)
{
    auto* const link = new WindowLink(desktop, std::move(instance), bench);  // deleted by end()
    link->frame_ = new MainWindow(*link);
    link->frame_->show();
    return link;
}

WindowLink::WindowLink(Desktop& desktop, std::shared_ptr<CXInstance> instance, Workbench& bench)
    : desktop_(desktop), instance_(std::move(instance)), bench_(bench)
{
    connect(this, &WindowLink::jobChanged, this, [this](Job job) { job_ = job; });
}

WindowLink::~WindowLink()
{
    delete frame_;
}

void WindowLink::run(std::function<void(Workbench&)> work)
{
    instance_->post([&bench = bench_, work = std::move(work)] {
        work(bench);
        bench.sendChanges();
    });
}

void WindowLink::runOn(ListNumber list, std::function<void(Workbench&)> work)
{
    run([list, work = std::move(work)](Workbench& bench) {
        if (bench.list() == list)
            work(bench);
    });
}

void WindowLink::cancelJob()
{
    bench_.cancel().cancel();
}

void WindowLink::requestClose()
{
    Q_EMIT closeAsked();
    run([](Workbench& bench) { bench.closeAgreed(); });
}

void WindowLink::setCurrentItem(std::optional<ItemId> item)
{
    if (current_ == item)
        return;
    current_ = item;
    Q_EMIT currentRowChanged();
}

void WindowLink::take(RowPatch patch)
{
    const Row first = patch.first, before = patch.before, after = static_cast<Row>(patch.entries.size());
    const bool rows = before > 0 || after > 0;
    if (rows)
        Q_EMIT rowsAboutToBePatched(first, before, after);
    rows_.apply(std::move(patch));
    if (rows)
        Q_EMIT rowsPatched(first, before, after);
    Q_EMIT figuresChanged();
}

void WindowLink::beginList(ListNumber list)
{
    list_ = list;
    Q_EMIT listBegan();
}

void WindowLink::end()
{
    frame_->hide();
    deleteLater();
}

}  // namespace kelvane
