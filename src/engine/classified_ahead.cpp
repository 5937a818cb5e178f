#include "engine/classified_ahead.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

#include "engine/exact_partition.h"
#include "engine/ordered_tasks.h"
#include "engine/part_classifier.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// Workers take the partitions in sorted order, so that what the walk needs first is read first.
class ClassifiedNeighbours final : public Neighbours {
public:
    ClassifiedNeighbours(const ScanCriteria& criteria, const SortedCandidates& sorted, const GroupingPorts& ports,
                         ExactPartitions partitions, GroupingStats& stats)
        : criteria_(criteria),
          sorted_(sorted),
          ports_(ports),
          partitions_(std::move(partitions)),
          stats_(stats),
          links_(sorted.size()),
          classesAgree_(classesMustAgree(criteria))
    {
    }

    void linkWithoutContents()
    {
        for (const auto& part : partitions_.parts)
            links_.linkAll(partitions_.of(part), false);
    }

    void startReading(const AheadBudget& budget)
    {
        for (const auto& part : partitions_.parts)
            bytesToRead_ += part.count * comparedBytes(part);
        const unsigned workers = workerCount(criteria_.options.threads);
        ContentBudget share = budget.worker;
        share.openFiles = std::max<std::size_t>(budget.openFiles / workers, 2);
        share.keptBytes = std::min(share.keptBytes, budget.keptBytes / workers);
        tasks_.emplace(partitions_.parts.size(), workers, [this, share] { return makeTask(share); });
    }

    bool ready(std::uint32_t position, const std::function<void()>& whileWaiting) override
    {
        const auto& parts = partitions_.parts;
        const bool firstOfPart = reached_ < parts.size() && partitions_.members[parts[reached_].begin] == position;
        if (!firstOfPart)
            return true;
        const std::size_t part = reached_++;
        return !tasks_ || tasks_->await(part, ports_.cancel, whileWaiting);
    }
    // Equal files are equal to one another, so that the chain of them holds whichever is the reference.
    std::uint32_t next(std::uint32_t, std::uint32_t after) const override { return links_.next(after); }
    std::optional<bool> keysEqual(std::uint32_t a, std::uint32_t b) const override
    {
        return classesAgree_ || sorted_.classes[a] == sorted_.classes[b];
    }
    bool contentsKnownEqual(std::uint32_t position) const override { return links_.contentsKnown(position); }
    std::uint64_t bytesRead() const override { return bytesRead_.load(std::memory_order_relaxed); }
    std::uint64_t bytesToRead() const override { return bytesToRead_; }

private:
    std::uint64_t comparedBytes(const ExactPartitions::Part& part) const
    {
        const ShellItem& item = sorted_.at(partitions_.members[part.begin]).item();
        const FileSize limit = hugeLimit(criteria_.options.hugeFile, item.inFileSystem());
        return comparedRanges(item.info().size, limit).totalBytes();
    }

    // Called on a worker's thread.
    OrderedTasks::Task makeTask(const ContentBudget& budget)
    {
        const auto classifier =
            std::make_shared<PartClassifier>(ports_.shell, criteria_.options, ports_.cancel, sorted_, links_, budget,
                                             [this](const ShellItem& item, const Error& error) { skip(item, error); });
        return [this, classifier](std::size_t part) {
            const std::uint64_t before = classifier->bytesRead();
            // A part that was cancelled stays unlinked; the walk sees the same flag and ends.
            static_cast<void>(classifier->classify(partitions_.of(partitions_.parts[part])));
            bytesRead_.fetch_add(classifier->bytesRead() - before, std::memory_order_relaxed);
        };
    }

    void skip(const ShellItem& item, const Error& error)
    {
        const std::lock_guard lock(skipMutex_);
        ++stats_.skipped;
        ports_.observer.skipped({bytesFromNative(item.fullName()), error});
    }

    const ScanCriteria& criteria_;
    const SortedCandidates& sorted_;
    const GroupingPorts& ports_;
    ExactPartitions partitions_;
    GroupingStats& stats_;  // of which workers touch `skipped` alone
    NeighbourLinks links_;
    bool classesAgree_;
    std::size_t reached_ = 0;  // the first partition that the walk has not come to
    std::uint64_t bytesToRead_ = 0;
    std::atomic<std::uint64_t> bytesRead_{0};
    std::mutex skipMutex_;
    std::optional<OrderedTasks> tasks_;  // last: its threads use everything above
};

}  // namespace

std::unique_ptr<Neighbours> classifyAhead(const ScanCriteria& criteria, const SortedCandidates& sorted,
                                          const GroupingPorts& ports, const AheadBudget& budget, GroupingStats& stats)
{
    auto partitions = partitionExactly(criteria, sorted, ports.properties, ports.shell, ports.cancel);
    if (!partitions)
        return nullptr;
    auto neighbours = std::make_unique<ClassifiedNeighbours>(criteria, sorted, ports, std::move(*partitions), stats);
    const bool contents =
        criteria.has(scan_flag::contents) && !criteria.onlyPrimary && criteria.category() < Category::folders;
    if (contents)
        neighbours->startReading(budget);
    else
        neighbours->linkWithoutContents();
    return neighbours;
}

unsigned workerCount(unsigned asked) noexcept
{
    return asked != 0 ? asked : std::clamp(std::thread::hardware_concurrency(), 2u, 16u);
}

}  // namespace kelvane
