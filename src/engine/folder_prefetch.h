// A stack of folders that worker threads list ahead.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "base/cancel.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// The owner pushes folders and takes the last one pushed; what it gets is the same, in the same order, as if it listed
// each folder itself at that moment. Workers begin with the folders on top, which are needed next. At most about
// `mostWaiting` items wait to be taken; then workers pause, so that memory stays bounded whatever the tree looks like.
// push() and listTop() belong to one thread.
class FolderPrefetch {
public:
    static constexpr std::size_t mostWaiting = 65'536;

    // Without workers every folder is listed by the owner. The ports must outlive the object.
    FolderPrefetch(ShellNamespace& shell, const CancelFlag& cancel, unsigned workers);
    ~FolderPrefetch();  // stops the workers: within 100 ms, or when the system's current call returns
    FolderPrefetch(const FolderPrefetch&) = delete;
    FolderPrefetch& operator=(const FolderPrefetch&) = delete;

    void push(Ref<const ShellItem> folder, const ListingOptions& options);
    [[nodiscard]] bool empty() const { return stack_.empty(); }
    [[nodiscard]] const Ref<const ShellItem>& top() const;

    // Takes the top folder off the stack and gives its children. sink may push. `cancelled` when the flag was set
    // meanwhile; then the object is good for nothing but its end.
    using Sink = std::function<void(Ref<ShellItem>)>;
    [[nodiscard]] Status listTop(const Sink& sink);

private:
    struct Job;
    using JobPtr = std::shared_ptr<Job>;

    void work();
    [[nodiscard]] JobPtr nextJob(std::unique_lock<std::mutex>& lock);
    void listAhead(Job& job);
    [[nodiscard]] bool publish(Job& job, std::vector<Ref<ShellItem>>& items);
    [[nodiscard]] bool claim(Job& job);
    [[nodiscard]] Status takeOver(Job& job, const Sink& sink);
    [[nodiscard]] bool takeBatch(Job& job, std::vector<Ref<ShellItem>>& items);
    [[nodiscard]] Status listNow(const Job& job, const Sink& sink);
    void taken(std::size_t count);

    ShellNamespace& shell_;
    const CancelFlag& cancel_;
    std::vector<JobPtr> stack_;  // the owner's

    std::mutex mutex_;                 // guards everything below, and the jobs
    std::condition_variable work_;     // there is a folder to list, or the end
    std::condition_variable arrived_;  // items for the owner
    std::condition_variable room_;     // the owner took items
    std::vector<JobPtr> offered_;      // folders that nobody has begun, the next one last
    std::size_t waiting_ = 0;          // items, and folders begun ahead, that the owner has not taken
    bool stop_ = false;
    std::vector<std::jthread> workers_;
};

}  // namespace kelvane
