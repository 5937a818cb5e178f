#include "engine/folder_prefetch.h"

#include <chrono>
#include <exception>
#include <system_error>
#include <utility>

namespace kelvane {
namespace {

// Items change hands in batches, since every hand-over costs a lock.
constexpr std::size_t batch = 256;
// The cancel flag wakes nobody, so whoever waits looks at it this often.
constexpr std::chrono::milliseconds pollInterval{50};

Error cancelledError()
{
    return {ErrorKind::cancelled, 0, {}};
}

}  // namespace

// One folder of the stack.
struct FolderPrefetch::Job {
    enum class State { offered, listing, listed, taken };

    Ref<const ShellItem> folder;
    ListingOptions options;
    State state = State::offered;
    bool wanted = false;  // the owner waits for it
    std::vector<Ref<ShellItem>> items;
    Status result;
    std::exception_ptr failure;
};

FolderPrefetch::FolderPrefetch(ShellNamespace& shell, const CancelFlag& cancel, unsigned workers)
    : shell_(shell), cancel_(cancel)
{
    // A system that gives no more threads makes the walk slower, not wrong.
    try {
        for (unsigned i = 0; i < workers; ++i)
            workers_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
    }
}

FolderPrefetch::~FolderPrefetch()
{
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    work_.notify_all();
    room_.notify_all();
}

void FolderPrefetch::push(Ref<const ShellItem> folder, const ListingOptions& options)
{
    auto job = std::make_shared<Job>();
    job->folder = std::move(folder);
    job->options = options;
    stack_.push_back(job);
    if (workers_.empty())
        return;
    {
        const std::lock_guard lock(mutex_);
        offered_.push_back(std::move(job));
    }
    work_.notify_one();
}

const Ref<const ShellItem>& FolderPrefetch::top() const
{
    return stack_.back()->folder;
}

Status FolderPrefetch::listTop(const Sink& sink)
{
    const JobPtr job = std::move(stack_.back());
    stack_.pop_back();
    return claim(*job) ? listNow(*job, sink) : takeOver(*job, sink);
}

// Whether no worker has begun this folder, so that the owner lists it without a detour.
bool FolderPrefetch::claim(Job& job)
{
    if (workers_.empty())
        return true;
    const std::lock_guard lock(mutex_);
    if (job.state != Job::State::offered) {
        job.wanted = true;
        room_.notify_all();
        return false;
    }
    job.state = Job::State::taken;
    while (!offered_.empty() && offered_.back()->state != Job::State::offered)
        offered_.pop_back();
    return true;
}

Status FolderPrefetch::listNow(const Job& job, const Sink& sink)
{
    auto listed = shell_.enumerate(job.folder, job.options, [&](Ref<ShellItem> item) {
        if (!cancel_.cancelled())
            sink(std::move(item));
        return !cancel_.cancelled();
    });
    return cancel_.cancelled() ? Status(cancelledError()) : std::move(listed);
}

Status FolderPrefetch::takeOver(Job& job, const Sink& sink)
{
    std::vector<Ref<ShellItem>> items;
    while (takeBatch(job, items)) {
        for (auto& item : items) {
            if (cancel_.cancelled())
                return cancelledError();
            sink(std::move(item));
        }
    }
    if (cancel_.cancelled())
        return cancelledError();
    if (job.failure)
        std::rethrow_exception(job.failure);
    return std::move(job.result);
}

// Waits for items; false at the end of the listing and on cancel.
bool FolderPrefetch::takeBatch(Job& job, std::vector<Ref<ShellItem>>& items)
{
    items.clear();
    std::unique_lock lock(mutex_);
    while (job.items.empty() && job.state != Job::State::listed && !cancel_.cancelled())
        arrived_.wait_for(lock, pollInterval);
    items.swap(job.items);
    taken(items.empty() ? 1 : items.size());
    return !items.empty() && !cancel_.cancelled();
}

// The owner took so many things that were waiting.
void FolderPrefetch::taken(std::size_t count)
{
    const bool wasFull = waiting_ >= mostWaiting;
    waiting_ -= count;
    room_.notify_all();
    if (wasFull && waiting_ < mostWaiting)
        work_.notify_all();
}

void FolderPrefetch::work()
{
    std::unique_lock lock(mutex_);
    while (const JobPtr job = nextJob(lock)) {
        job->state = Job::State::listing;
        ++waiting_;
        lock.unlock();
        listAhead(*job);
        lock.lock();
    }
}

// Null at the end. A folder that the owner has taken meanwhile is passed over.
FolderPrefetch::JobPtr FolderPrefetch::nextJob(std::unique_lock<std::mutex>& lock)
{
    while (true) {
        work_.wait(lock, [&] { return stop_ || (!offered_.empty() && waiting_ < mostWaiting); });
        if (stop_ || cancel_.cancelled())
            return nullptr;
        JobPtr job = std::move(offered_.back());
        offered_.pop_back();
        if (job->state == Job::State::offered)
            return job;
    }
}

void FolderPrefetch::listAhead(Job& job)
{
    std::vector<Ref<ShellItem>> items;
    Status result;
    std::exception_ptr failure;
    try {
        result = shell_.enumerate(job.folder, job.options, [&](Ref<ShellItem> item) {
            items.push_back(std::move(item));
            return !cancel_.cancelled() && (items.size() < batch || publish(job, items));
        });
    } catch (...) {
        failure = std::current_exception();  // out of memory: the owner's to deal with
    }
    const std::lock_guard lock(mutex_);
    waiting_ += items.size();
    job.items.insert(job.items.end(), std::make_move_iterator(items.begin()), std::make_move_iterator(items.end()));
    job.result = std::move(result);
    job.failure = failure;
    job.state = Job::State::listed;
    arrived_.notify_one();
}

// Hands a batch over and waits while too much lies waiting. The folder that the owner waits for may always go on, or
// the two would wait for each other; it then waits for its own items to be taken.
bool FolderPrefetch::publish(Job& job, std::vector<Ref<ShellItem>>& items)
{
    std::unique_lock lock(mutex_);
    waiting_ += items.size();
    job.items.insert(job.items.end(), std::make_move_iterator(items.begin()), std::make_move_iterator(items.end()));
    items.clear();
    arrived_.notify_one();
    const auto mayGoOn = [&] {
        return stop_ || waiting_ < mostWaiting || (job.wanted && job.items.size() < batch * 16);
    };
    while (!mayGoOn() && !cancel_.cancelled())
        room_.wait_for(lock, pollInterval);
    return !stop_;
}

}  // namespace kelvane
