#include "text/extraction_service.h"

#include <mutex>
#include <set>

#include "platform/memory_file.h"
#include "platform/worker_frames.h"
#include "text/document_extractor.h"
#include "text/file_kinds.h"
#include "text/format_registry.h"
#include "text/shell_file.h"
#include "text/worker_pool.h"
#include "text/worker_task.h"

namespace kelvane {
namespace {

// Of what is held in memory, where the settings do not bound it.
constexpr std::uint64_t largestCopy = 256u * 1'048'576u;

ExtractedDocument nothing(TextOutcome outcome, std::string detail = {})
{
    ExtractedDocument document;
    document.outcome = outcome;
    document.detail = std::move(detail);
    return document;
}

WorkerLimits limitsFrom(const ExtractionOptions& options)
{
    WorkerLimits limits;
    limits.memoryBytes = options.workerMemory;
    limits.perRequest = options.timeout;
    return limits;
}

ExtractedDocument withoutWorker(const Error& error)
{
    const std::string name(workerProgramName(WorkerProgram::documents));
    switch (startFaultOf(error)) {
    case StartFault::passing:
        return nothing(TextOutcome::unreadable, error.detail);
    case StartFault::broken:
        return nothing(TextOutcome::crashed, name + ": " + error.detail);
    case StartFault::missing:
        break;
    }
    ExtractedDocument document = nothing(TextOutcome::toolMissing, error.detail);
    document.missingTool = name;
    return document;
}

class ExtractionService final : public TextExtraction {
public:
    ExtractionService(const ExtractionPorts& ports, ExtractionOptions options)
        : ports_(ports),
          options_(std::move(options)),
          pool_(ports_.workers, limitsFrom(options_), workersAtOnce(options_.workers))
    {
    }

    ExtractedDocument extract(const ShellItem& item, const CancelFlag& cancel) override;
    bool hopeless(const ShellItem& item) const override;
    std::vector<std::string> missingTools() const override;
    std::string warning() const override { return pool_.warning(); }
    const ExtractionOptions& options() const override { return options_; }

private:
    ExtractedDocument extractUnnoted(const ShellItem& item, const CancelFlag& cancel);
    ExtractedDocument extractFrom(ShellFile& file, const ShellItem& item, const std::string& name,
                                  const CancelFlag& cancel);
    ExtractedDocument extractHere(RandomAccessFile& file, const std::string& name);
    ExtractedDocument extractCopy(ShellFile& file, const std::string& name, const CancelFlag& cancel);
    ExtractedDocument askWorker(const std::string& name, const WorkerInput& input, const CancelFlag& cancel);
    [[nodiscard]] bool readWhateverSize(const std::string& name) const;
    void note(const std::string& tool);

    ExtractionPorts ports_;
    const ExtractionOptions options_;
    WorkerPool pool_;
    mutable std::mutex mutex_;
    std::set<std::string> missing_;
};

ExtractedDocument ExtractionService::extract(const ShellItem& item, const CancelFlag& cancel)
{
    ExtractedDocument document = extractUnnoted(item, cancel);
    if (document.outcome == TextOutcome::toolMissing && !document.missingTool.empty())
        note(document.missingTool);
    return document;
}

ExtractedDocument ExtractionService::extractUnnoted(const ShellItem& item, const CancelFlag& cancel)
{
    if (cancel.cancelled())
        return nothing(TextOutcome::cancelled);
    if (item.isFolder())
        return nothing(TextOutcome::unknownFormat);
    const std::string name = lastName(item);
    if (contains(options_.excluded, extensionOf(name)))
        return nothing(TextOutcome::excluded);
    const auto file = ShellFile::open(ports_.shell, item);
    if (!file)
        return nothing(TextOutcome::unreadable, file.error().detail);
    return extractFrom(**file, item, name, cancel);
}

ExtractedDocument ExtractionService::extractFrom(ShellFile& file, const ShellItem& item, const std::string& name,
                                                 const CancelFlag& cancel)
{
    const DocumentFormat* format = formatOf(name, file.head());
    if (!format)
        return ports_.others ? ports_.others->extract(item, cancel) : nothing(TextOutcome::unknownFormat);
    if (format->plain)
        return extractHere(file, name);
    if (!readWhateverSize(name) && file.size() > options_.largestStream)
        return nothing(TextOutcome::tooLarge);
    if (!item.inFileSystem() || format->asCopy)
        return extractCopy(file, name, cancel);
    return options_.worker ? askWorker(name, {item.path(), {}, linksOf(item)}, cancel) : extractHere(file, name);
}

ExtractedDocument ExtractionService::extractHere(RandomAccessFile& file, const std::string& name)
{
    return extractDocument(file, name, {ports_.decoding, ports_.xml, ports_.packages, ports_.filters, options_});
}

// An archive is unpacked once, from its beginning: whoever reads the entry here and there gets a copy.
ExtractedDocument ExtractionService::extractCopy(ShellFile& file, const std::string& name, const CancelFlag& cancel)
{
    auto content = readWhole(file, readWhateverSize(name) ? largestCopy : options_.largestStream, cancel);
    if (cancel.cancelled())
        return nothing(TextOutcome::cancelled);
    if (!content)
        return nothing(TextOutcome::unreadable, content.error().detail);
    if (content->tooLong)
        return nothing(TextOutcome::tooLarge);
    if (options_.worker)
        return askWorker(name, {{}, content->bytes}, cancel);
    MemoryFile copy(std::move(content->bytes));
    return extractHere(copy, name);
}

ExtractedDocument ExtractionService::askWorker(const std::string& name, const WorkerInput& input,
                                               const CancelFlag& cancel)
{
    std::optional<ExtractedDocument> document;
    const auto sensible = [&](std::span<const std::byte> answer) {
        document = decodeDocument(answer);
        return document && document->text.size() <= options_.textSample;
    };
    const auto request = encodeRequest({name, options_.textSample, options_.largestStream});
    const auto answer = pool_.ask(request, input, cancel, sensible);
    if (!answer)
        return withoutWorker(answer.error());
    return answer->end == WorkerEnd::answered ? std::move(*document)
                                              : nothing(outcomeOf(answer->end), answer->error.detail);
}

bool ExtractionService::readWhateverSize(const std::string& name) const
{
    return options_.largestStream == 0 || contains(options_.whiteList, extensionOf(name));
}

bool ExtractionService::hopeless(const ShellItem& item) const
{
    if (item.isFolder() || item.info().size.bytes == 0)
        return true;
    const std::string name = lastName(item);
    const std::string extension = extensionOf(name);
    if (contains(options_.excluded, extension))
        return true;
    return neverHoldsText(extension) && !formatByName(name) && !(ports_.others && ports_.others->mayRead(item));
}

std::vector<std::string> ExtractionService::missingTools() const
{
    const std::lock_guard lock(mutex_);
    return {missing_.begin(), missing_.end()};
}

void ExtractionService::note(const std::string& tool)
{
    const std::lock_guard lock(mutex_);
    missing_.insert(tool);
}

}  // namespace

std::unique_ptr<TextExtraction> makeTextExtraction(const ExtractionPorts& ports, ExtractionOptions options)
{
    return std::make_unique<ExtractionService>(ports, std::move(options));
}

}  // namespace kelvane
