#include "ui/core/workbench.h"

#include <QPointer>
#include <atomic>
#include <utility>

#include "app/cleanup_bookkeeping.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {

struct Workbench::Slot {
    QPointer<WindowLink> link;               // touched on the main thread alone
    std::atomic<bool> patchUnderWay{false};  // the main thread has not come to it yet
};

Workbench::Workbench(CXInstance& instance, Desktop& desktop)
    : instance_(instance), desktop_(desktop), feed_(results_), slot_(std::make_shared<Slot>())
{
    desktop_.setBenchOfThisThread(this);
    postToMain([slot = slot_, self = this, window = instance.shared_from_this(), &desktop]() mutable {
        slot->link = WindowLink::open(desktop, std::move(window), *self);
    });
}

Workbench::~Workbench()
{
    desktop_.setBenchOfThisThread(nullptr);
    postToMain([slot = slot_] {
        if (slot->link)
            slot->link->end();
    });
}

ListSession& Workbench::beginList(Settings settings, EngineOptions options)
{
    filter_.reset();
    results_.clear();
    followOptions(settings);
    session_ = std::make_unique<ListSession>(platform(), std::move(settings), std::move(options), reading_);
    filter_ = std::make_unique<QuickFilter>(results_, session_->access.source);
    list_ = ListNumber{static_cast<std::uint32_t>(list_) + 1};
    toMain([list = list_](WindowLink& link) { link.beginList(list); });
    return *session_;
}

void Workbench::followOptions(const Settings& settings)
{
    results_.dropLoneSurvivors((settings.moreOptions & more_setting::keepLone) == 0);
}

std::unique_ptr<Workbench::Running> Workbench::begin(Job job)
{
    if (job_ != Job::none || closing_)
        return nullptr;
    job_ = job;
    cancel_.reset();
    toMain([job](WindowLink& link) { Q_EMIT link.jobChanged(job); });
    return std::make_unique<Running>(*this);
}

void Workbench::endJob()
{
    job_ = Job::none;
    toMain([](WindowLink& link) { Q_EMIT link.jobChanged(Job::none); });
    if (closing_)
        instance_.quit();
}

void Workbench::serve()
{
    instance_.servePending();
    // Patches that come faster than the main thread takes them would keep it from everything else: they wait here and
    // become one. The end of a job sends what is left.
    if (!slot_->patchUnderWay)
        sendChanges();
}

void Workbench::toMain(std::function<void(WindowLink&)> work)
{
    sendChanges();
    postToMain([slot = slot_, work = std::move(work)] {
        if (slot->link)
            work(*slot->link);
    });
}

void Workbench::sendChanges()
{
    auto patch = feed_.take();
    if (!patch)
        return;
    slot_->patchUnderWay = true;
    postToMain([slot = slot_, patch = std::make_shared<RowPatch>(*std::move(patch))] {
        slot->patchUnderWay = false;
        if (slot->link)
            slot->link->take(std::move(*patch));
    });
}

WindowLink* Workbench::linkOnMain()
{
    return slot_->link;
}

void Workbench::tell(std::u16string_view status)
{
    toMain([text = toQt(status)](WindowLink& link) { Q_EMIT link.statusTold(text); });
}

void Workbench::log(std::u16string_view line)
{
    toMain([text = toQt(line)](WindowLink& link) { Q_EMIT link.logged(text); });
}

void Workbench::closeAgreed()
{
    stopAgreed_ = true;
    closeRequested();
}

void Workbench::closeRequested()
{
    closing_ = true;
    if (job_ == Job::none)
        instance_.quit();
    else
        cancel_.cancel();
}

}  // namespace kelvane
