#include "app/cx_instance.h"

#include <system_error>
#include <utility>

#include "base/text_table.h"

namespace kelvane {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds operationsStep{10'000};
constexpr milliseconds operationsFarewell{5'000};
constexpr milliseconds referenceLimit{5'000};

}  // namespace

CXInstance::CXInstance(InstanceNumber number, CommandLine line, bool first, const InstanceContext& context)
    : number_(number),
      line_(std::move(line)),
      first_(first),
      context_(context),
      queue_(std::make_shared<WorkQueue>(context.waiting)),
      reference_(queue_)
{
}

CXInstance::~CXInstance()
{
    if (thread_.joinable())
        thread_.join();
}

WindowHandle CXInstance::handle()
{
    return {number_, queue_, [this] {
                if (window_)
                    window_->closeRequested();
            }};
}

bool CXInstance::start()
{
    try {
        thread_ = std::thread([self = shared_from_this()] { self->run(); });
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void CXInstance::quit()
{
    quitting_.store(true);
    queue_->wake();
}

void CXInstance::awaitEnd(milliseconds limit)
{
    std::unique_lock lock(mutex_);
    if (context_.waiting.until(lock, changed_, limit, [this] { return ended_; })) {
        lock.unlock();
        thread_.join();
    } else {
        thread_.detach();  // it holds this object for as long as it needs it
    }
}

void CXInstance::run()
{
    context_.crashes.guardThisThread();
    runWindow();
    queue_->close();
    context_.messages.post(WindowEnded{number_});
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
}

void CXInstance::runWindow()
{
    window_ = context_.host.makeWindow(*this);
    auto hold = context_.holdsThreads ? reference_.hold() : nullptr;
    if (window_ && first_) {
        context_.firstPrompts(*this);
        context_.messages.post(FirstWindowUp{number_});
    }
    if (window_)
        queue_->serve([this] { return isQuitting(); });
    window_.reset();
    afterLoop(context_.openLoops.fetch_sub(1) == 1);
    hold.reset();
    (void)queue_->serveFor(referenceLimit, [this] { return reference_.isFree(); });
}

void CXInstance::afterLoop(bool last)
{
    if (const auto failure = context_.settingsFailure(); !failure.empty())
        context_.host.questions().showError(failure);
    if (last && context_.background.any())
        settleBackgroundOperations();
}

void CXInstance::settleBackgroundOperations()
{
    context_.background.bringOneToFront();
    if (!context_.host.questions().askYesNo(text(TextId::operationsRunning))) {
        (void)context_.background.awaitNone(operationsFarewell);
        return;
    }
    while (!context_.background.awaitNone(operationsStep)) {
    }
}

}  // namespace kelvane
