#include "engine/walker.h"

#include <algorithm>
#include <optional>
#include <thread>

#include "engine/admission.h"
#include "engine/candidate_preparation.h"
#include "engine/descend.h"
#include "engine/folder_prefetch.h"
#include "engine/walk_progress.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// More threads than this only queue up for the disk.
constexpr unsigned mostThreads = 16;

unsigned workersFor(const EngineOptions& options)
{
    const unsigned threads = options.threads != 0 ? options.threads : std::thread::hardware_concurrency();
    return std::clamp(threads, 1u, mostThreads) - 1;  // the deciding thread lists as well
}

// An archive is met as a folder; its contents are compared as those of the file that it is.
Ref<ShellItem> asFile(const Ref<ShellItem>& item)
{
    if (item->place() != ShellItem::Place::archive)
        return item;
    return ShellItem::make(item->parent(), item->name(), item->info(), ShellItem::Place::fileSystem);
}

}  // namespace

class Walker::Impl {
public:
    Impl(const ScanCriteria& criteria, const WalkPorts& ports, CandidateList& candidates)
        : criteria_(criteria),
          ports_(ports),
          candidates_(candidates),
          preparation_(ports.preparation != nullptr && ports.preparation->needed() ? ports.preparation : nullptr),
          admission_(criteria, ports.shell, ports.properties,
                     {.similar = ports.similar, .valuesLater = preparation_ != nullptr}),
          descend_(criteria, ports.paths, ports.shell),
          progress_(ports.shell, ports.clock, ports.observer)
    {
    }

    WalkResult walk(const std::string& root)
    {
        if (ports_.cancel.cancelled())
            return WalkResult::cancelled;
        const auto item = ports_.shell.parse(nativeFromBytes(root));
        if (!item) {
            skip(root, item.error());
            return WalkResult::done;
        }
        begin(*item);
        const WalkResult result = drainStack();
        stats_.outsideMasks = admission_.outsideMasks();
        stats_.offlineSkipped = admission_.offlineSkipped();
        stats_.withoutValue = admission_.withoutValue();
        return result;
    }

    const WalkStats& stats() const { return stats_; }

private:
    void begin(const Ref<ShellItem>& root)
    {
        if (descend_.isPseudo(*root))
            return;  // cleaning the list of roots has named it already
        if (!root->isFolder())
            beginAtFile(root);
        else if (ports_.shell.typeCode(*root) != type_code::portableDevice && descend_.entersRoot(*root))
            push(root);
    }

    void beginAtFile(const Ref<ShellItem>& root)
    {
        takeFile(root);
        if (!criteria_.options.has(option_flag::enterVirtualFolders))
            return;
        // With a separator behind it, an archive's name means the folder that it holds.
        const auto asFolder = ports_.shell.parse(root->fullName() + std::filesystem::path::preferred_separator);
        if (asFolder && (*asFolder)->isFolder() && descend_.entersRoot(**asFolder))
            push(*asFolder);
    }

    WalkResult drainStack()
    {
        while (folders_ && !folders_->empty()) {
            if (ports_.cancel.cancelled())
                return WalkResult::cancelled;
            const Ref<const ShellItem> folder = folders_->top();
            progress_.enteringFolder(*folder, candidates_.size());
            const auto listed = folders_->listTop([&](Ref<ShellItem> item) { take(item); });
            ++stats_.folders;
            if (!listed && listed.error().kind == ErrorKind::cancelled)
                return WalkResult::cancelled;
            if (!listed)
                skip(bytesFromNative(folder->fullName()), listed.error());
        }
        return WalkResult::done;
    }

    void take(const Ref<ShellItem>& item)
    {
        if (item->info().kind == FileKind::regular)
            takeFile(asFile(item));
        if (item->isFolder() && criteria_.has(scan_flag::subfolders) && descend_.enters(*item))
            push(item);
        progress_.counted(candidates_.size());
    }

    void takeFile(const Ref<ShellItem>& file)
    {
        ++stats_.filesSeen;
        auto candidate = admission_.test(file);
        if (!candidate)
            return;
        candidates_.push_back(*std::move(candidate));
        if (preparation_ != nullptr)
            preparation_->begin(candidates_.back());
    }

    void push(const Ref<ShellItem>& folder)
    {
        if (!folders_)
            folders_.emplace(ports_.shell, ports_.cancel, workersFor(criteria_.options));
        folders_->push(folder, listingOf(*folder));
    }

    ListingOptions listingOf(const ShellItem& folder) const
    {
        ListingOptions options;
        options.links = followsLinks(criteria_) ? Links::followed : Links::asThemselves;
        const bool showsHidden = folder.inFileSystem() || criteria_.options.has(option_flag::enumerateHidden);
        options.includeHidden = showsHidden && !criteria_.has(scan_flag::protect);
        options.archivesAsFolders = criteria_.options.has(option_flag::enterVirtualFolders);
        return options;
    }

    // What vanished between being seen and being listed is no fault of anyone's, so that is told but not counted.
    void skip(std::string path, const Error& error)
    {
        if (error.kind != ErrorKind::notFound)
            ++stats_.skipped;
        ports_.observer.skipped({std::move(path), error});
    }

    const ScanCriteria& criteria_;
    WalkPorts ports_;
    CandidateList& candidates_;
    CandidatePreparation* const preparation_;  // null where candidates need no more than their records
    Admission admission_;
    DescendTest descend_;
    WalkProgress progress_;
    WalkStats stats_;
    std::optional<FolderPrefetch> folders_;
};

Walker::Walker(const ScanCriteria& criteria, const WalkPorts& ports, CandidateList& candidates)
    : impl_(std::make_unique<Impl>(criteria, ports, candidates))
{
}

Walker::~Walker() = default;

WalkResult Walker::walk(const std::string& root)
{
    return impl_->walk(root);
}

const WalkStats& Walker::stats() const
{
    return impl_->stats();
}

}  // namespace kelvane
