#include "engine/content_classes.h"

#include <algorithm>

#include "base/filled_text.h"
#include "engine/content_compare.h"

namespace kelvane {

// What is read of every file in one round.
struct ContentClassifier::Chunk {
    std::uint64_t position = 0;
    std::size_t length = 0;
    std::size_t range = 0;     // where the next round goes on
    std::uint64_t offset = 0;  // in that range
    bool last = false;
};

// Files that are equal so far.
struct ContentClassifier::Group {
    std::vector<std::uint32_t> files;
    std::size_t range = 0;
    std::uint64_t offset = 0;  // in the range
    std::size_t chunk = 0;     // length to read next
};

// The state of one round, kept for its memory.
struct ContentClassifier::Round {
    explicit Round(ChunkHasher hasher) : buckets(hasher) {}

    ChunkBuckets buckets;
    std::vector<std::uint32_t> bucketOf;  // of each file of the group
    std::vector<std::uint32_t> target;    // of each bucket: its place in groups_
};

ContentClassifier::ContentClassifier(ShellNamespace& shell, const EngineOptions& options, const CancelFlag& cancel,
                                     const ContentBudget& budget, Skipped skipped)
    : shell_(shell),
      options_(options),
      cancel_(cancel),
      budget_(budget),
      skipped_(std::move(skipped)),
      kept_(budget.largestChunk, budget.keptBytes),
      round_(std::make_unique<Round>(budget.hasher))
{
    budget_.firstChunk = std::min(budget_.firstChunk, budget_.largestChunk);
}

ContentClassifier::~ContentClassifier() = default;

bool ContentClassifier::classify(std::span<const ShellItem* const> items, const ComparedRanges& compared,
                                 std::span<std::uint32_t> classes)
{
    items_ = items;
    compared_ = &compared;
    classes_ = classes;
    classCount_ = 0;
    std::fill(classes.begin(), classes.end(), compared.ranges.empty() ? 0 : alone);
    if (compared.ranges.empty())
        return true;
    files_.resize(std::max(files_.size(), items.size()));
    Group all{{}, 0, 0, budget_.firstChunk};
    for (std::uint32_t i = 0; i < items.size(); ++i)
        all.files.push_back(i);
    groups_.push_back(std::move(all));
    bool finished = true;
    while (finished && !groups_.empty()) {
        const Group group = std::move(groups_.back());
        groups_.pop_back();
        finished = runRound(group);
    }
    groups_.clear();
    closeAll();
    return finished;
}

ContentClassifier::Chunk ContentClassifier::chunkOf(const Group& group) const
{
    const ByteRange& range = compared_->ranges[group.range];
    Chunk chunk;
    chunk.position = range.begin.bytes + group.offset;
    chunk.length = static_cast<std::size_t>(std::min<std::uint64_t>(range.length.bytes - group.offset, group.chunk));
    const bool endsRange = group.offset + chunk.length == range.length.bytes;
    chunk.range = group.range + (endsRange ? 1 : 0);
    chunk.offset = endsRange ? 0 : group.offset + chunk.length;
    chunk.last = chunk.range == compared_->ranges.size();
    return chunk;
}

bool ContentClassifier::runRound(const Group& group)
{
    const Chunk chunk = chunkOf(group);
    Round& round = *round_;
    round.buckets.begin(group.files.size());
    round.bucketOf.assign(group.files.size(), alone);
    kept_.clear();
    for (std::size_t i = 0; i < group.files.size(); ++i) {
        if (cancel_.cancelled())
            return false;
        const Result<std::span<const std::byte>> bytes = read(group.files[i], chunk);
        if (bytes) {
            round.bucketOf[i] = round.buckets.place(*bytes, kept_);
        } else {
            close(group.files[i]);
            skipped_(*items_[group.files[i]], bytes.error());
        }
    }
    settle(group, chunk, round);
    return true;
}

// What becomes of the buckets: alone, a class, or another round (the same one again, where hashes alone were compared).
void ContentClassifier::settle(const Group& group, const Chunk& chunk, Round& round)
{
    round.target.assign(round.buckets.size(), alone);
    for (std::uint32_t i = 0; i < round.buckets.size(); ++i) {
        const ChunkBuckets::Bucket& bucket = round.buckets[i];
        if (bucket.count < 2)
            continue;
        if (bucket.bytes != nullptr && chunk.last) {
            round.target[i] = classCount_++;
            continue;
        }
        Group next{{}, group.range, group.offset, group.chunk};
        if (bucket.bytes != nullptr)
            next = {{}, chunk.range, chunk.offset, std::min(group.chunk * budget_.growth, budget_.largestChunk)};
        next.files.reserve(bucket.count);
        round.target[i] = static_cast<std::uint32_t>(groups_.size());
        groups_.push_back(std::move(next));
    }
    for (std::size_t i = 0; i < group.files.size(); ++i) {
        const std::uint32_t file = group.files[i];
        const std::uint32_t bucket = round.bucketOf[i];
        if (bucket == alone || round.target[bucket] == alone)
            close(file);
        else if (chunk.last && round.buckets[bucket].bytes != nullptr)
            classes_[file] = round.target[bucket];
        else
            groups_[round.target[bucket]].files.push_back(file);
    }
}

Result<std::span<const std::byte>> ContentClassifier::read(std::uint32_t file, const Chunk& chunk)
{
    if (Status ready = seek(file, chunk.position); !ready)
        return ready.error();
    const std::span<std::byte> room = kept_.room(chunk.length);
    const Result<std::size_t> count = files_[file].reader->read(room);
    if (!count)
        return count.error();
    bytesRead_ += *count;
    files_[file].position += *count;
    if (*count != chunk.length)
        return Error{ErrorKind::changed, 0, filledText(TextId::fileBecameShorter)};
    if (Status finished = finishReading(file, chunk); !finished)
        return finished.error();
    return std::span<const std::byte>(room);
}

// Streams only move forward: what has to be read once more is opened once more.
Status ContentClassifier::seek(std::uint32_t file, std::uint64_t position)
{
    OpenFile& state = files_[file];
    if (state.reader == nullptr || state.position > position) {
        close(file);
        if (Status opened = open(file); !opened)
            return opened;
    }
    const std::uint64_t gap = position - state.position;
    state.position = position;
    return gap > 0 ? state.reader->skip(gap) : Status();
}

// When the system has no more handles, those kept for later rounds are given back first.
Status ContentClassifier::open(std::uint32_t file)
{
    auto reader = openForComparing(shell_, *items_[file], options_);
    if (!reader && reader.error().kind == ErrorKind::tooManyOpen) {
        closeAll();
        reader = openForComparing(shell_, *items_[file], options_);
    }
    if (!reader)
        return reader.error();
    files_[file] = {std::move(*reader), 0};
    ++openCount_;
    return {};
}

// A handle that is let go, because all was read or because there are too many, is asked first whether the file is still
// the one that was listed.
Status ContentClassifier::finishReading(std::uint32_t file, const Chunk& chunk)
{
    if (!chunk.last && openCount_ <= budget_.openFiles)
        return {};
    const bool unchanged = stillAsSeen(*files_[file].reader, *items_[file]);
    close(file);
    if (!unchanged)
        return Error{ErrorKind::changed, 0, filledText(TextId::fileChangedSince)};
    return {};
}

void ContentClassifier::close(std::uint32_t file)
{
    if (files_[file].reader != nullptr)
        --openCount_;
    files_[file] = {};
}

void ContentClassifier::closeAll()
{
    for (std::uint32_t i = 0; i < files_.size() && openCount_ > 0; ++i)
        close(i);
}

}  // namespace kelvane
