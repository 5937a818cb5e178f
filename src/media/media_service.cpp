#include "media/media_service.h"

#include <mutex>
#include <set>
#include <utility>

#include "media/media_task.h"
#include "platform/worker_frames.h"
#include "text/file_kinds.h"
#include "text/shell_file.h"
#include "text/worker_pool.h"

namespace kelvane {
namespace {

constexpr std::uint64_t largestAnswer = 16u * 1'048'576u;  // far above a preview, a fingerprint and all facts

MediaAnswer nothing(MediaOutcome outcome, std::string detail = {})
{
    MediaAnswer answer;
    answer.fault = {outcome, {}, std::move(detail)};
    return answer;
}

WorkerLimits limitsFrom(const MediaOptions& options)
{
    WorkerLimits limits;
    limits.program = WorkerProgram::media;
    limits.memoryBytes = options.workerMemory;
    limits.perRequest = options.timeout;
    limits.answerBytes = largestAnswer;
    return limits;
}

std::string workerName()
{
    return std::string(workerProgramName(WorkerProgram::media));
}

MediaOutcome outcomeOf(WorkerEnd end)
{
    switch (end) {
    case WorkerEnd::notOpened:
        return MediaOutcome::unreadable;
    case WorkerEnd::timedOut:
        return MediaOutcome::timedOut;
    case WorkerEnd::tooMuchMemory:
        return MediaOutcome::tooMuchMemory;
    case WorkerEnd::cancelled:
        return MediaOutcome::cancelled;
    case WorkerEnd::answered:
    case WorkerEnd::died:
        break;
    }
    return MediaOutcome::crashed;
}

MediaAnswer withoutWorker(const Error& error)
{
    switch (startFaultOf(error)) {
    case StartFault::passing:
        return nothing(MediaOutcome::unreadable, error.detail);
    case StartFault::broken:
        return nothing(MediaOutcome::crashed, workerName() + ": " + error.detail);
    case StartFault::missing:
        break;
    }
    return nothing(MediaOutcome::workerMissing, error.detail);
}

class MediaService final : public MediaReading {
public:
    MediaService(ShellNamespace& shell, WorkerProcesses& workers, MediaOptions options)
        : shell_(shell), options_(options), pool_(workers, limitsFrom(options_), workersAtOnce(options_.workers))
    {
    }

    MediaAnswer read(const ShellItem& item, const MediaWish& wish, const CancelFlag& cancel) override;
    bool hopeless(const ShellItem& item) const override { return item.isFolder() || item.info().size.bytes == 0; }
    std::vector<std::string> missing() const override;
    std::string warning() const override { return pool_.warning(); }
    const MediaOptions& options() const override { return options_; }

private:
    MediaAnswer readUnnoted(const ShellItem& item, const MediaWish& wish, const CancelFlag& cancel);
    MediaAnswer readEntry(const ShellItem& item, const MediaRequest& request, const CancelFlag& cancel);
    MediaAnswer askWorker(const MediaRequest& request, const WorkerInput& input, const CancelFlag& cancel);
    [[nodiscard]] bool isWanted(const MediaAnswer& answer, const MediaWish& wish) const;
    void note(const MediaFault& fault);

    ShellNamespace& shell_;
    const MediaOptions options_;
    WorkerPool pool_;
    mutable std::mutex mutex_;
    std::set<std::string> missing_;
};

MediaAnswer MediaService::read(const ShellItem& item, const MediaWish& wish, const CancelFlag& cancel)
{
    MediaAnswer answer = readUnnoted(item, wish, cancel);
    note(answer.fault);
    return answer;
}

MediaAnswer MediaService::readUnnoted(const ShellItem& item, const MediaWish& wish, const CancelFlag& cancel)
{
    if (cancel.cancelled())
        return nothing(MediaOutcome::cancelled);
    if (item.isFolder())
        return nothing(MediaOutcome::unknownFormat);
    if (item.info().size.bytes == 0)
        return nothing(MediaOutcome::damaged);
    const MediaRequest request{lastName(item), wish, options_.songStartMs};
    if (!item.inFileSystem())
        return readEntry(item, request, cancel);
    return askWorker(request, {item.path(), {}, linksOf(item)}, cancel);
}

// Decoders read here and there, which an archive is not made for.
MediaAnswer MediaService::readEntry(const ShellItem& item, const MediaRequest& request, const CancelFlag& cancel)
{
    if (item.info().size.bytes > options_.largestEntry)
        return nothing(MediaOutcome::tooLarge);
    const auto file = ShellFile::open(shell_, item);
    if (!file)
        return nothing(MediaOutcome::unreadable, file.error().detail);
    const auto content = readWhole(**file, options_.largestEntry, cancel);
    if (cancel.cancelled())
        return nothing(MediaOutcome::cancelled);
    if (!content)
        return nothing(MediaOutcome::unreadable, content.error().detail);
    if (content->tooLong)
        return nothing(MediaOutcome::tooLarge);
    return askWorker(request, {{}, content->bytes}, cancel);
}

MediaAnswer MediaService::askWorker(const MediaRequest& request, const WorkerInput& input, const CancelFlag& cancel)
{
    std::optional<MediaAnswer> decoded;
    const auto sensible = [&](std::span<const std::byte> bytes) {
        decoded = decodeMediaAnswer(bytes);
        return decoded && isWanted(*decoded, request.wish);
    };
    const auto answer = pool_.ask(encodeRequest(request), input, cancel, sensible);
    if (!answer)
        return withoutWorker(answer.error());
    return answer->end == WorkerEnd::answered ? std::move(*decoded)
                                              : nothing(outcomeOf(answer->end), answer->error.detail);
}

// What was wished for is there, or a fault of the file says why it is not; of how it fares itself, a worker may only
// say that its memory ran out.
bool MediaService::isWanted(const MediaAnswer& answer, const MediaWish& wish) const
{
    if (answer.fingerprint && answer.fingerprint->frames() != SongOpening(options_.songStartMs).frames)
        return false;
    if (answer.fault.outcome == MediaOutcome::made)
        return (answer.fingerprint != nullptr) == wish.fingerprint && (answer.preview != nullptr) == wish.preview;
    return answer.fault.outcome <= MediaOutcome::codecMissing || answer.fault.outcome == MediaOutcome::tooMuchMemory;
}

std::vector<std::string> MediaService::missing() const
{
    const std::lock_guard lock(mutex_);
    return {missing_.begin(), missing_.end()};
}

void MediaService::note(const MediaFault& fault)
{
    const bool codec = fault.outcome == MediaOutcome::codecMissing && !fault.codec.empty();
    if (!codec && fault.outcome != MediaOutcome::workerMissing)
        return;
    const std::lock_guard lock(mutex_);
    missing_.insert(codec ? fault.codec : workerName());
}

}  // namespace

std::unique_ptr<MediaReading> makeMediaReading(ShellNamespace& shell, WorkerProcesses& workers, MediaOptions options)
{
    return std::make_unique<MediaService>(shell, workers, options);
}

}  // namespace kelvane
