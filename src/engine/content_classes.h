// Files of one size, sorted into classes of equal contents in one pass over each.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <span>
#include <vector>

#include "base/cancel.h"
#include "engine/chunk_buckets.h"
#include "engine/compared_ranges.h"
#include "engine/engine_options.h"
#include "engine/kept_chunks.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// How much reading ahead may take, of one worker.
struct ContentBudget {
    std::size_t firstChunk = 16'384;  // small, since files that differ mostly do so soon
    std::size_t growth = 4;
    std::size_t largestChunk = 1'048'576;
    std::size_t keptBytes = 64 * largestChunk;  // of representatives of the classes of one round
    std::size_t openFiles = 128;
    ChunkHasher hasher = hashChunk;  // a poor one costs time and nothing else
};

// Compares in rounds: in each, one chunk of every file is read, hashed (XXH3, 128 bits) to find the classes it may
// belong to, and compared with the bytes of the class's representative. Equal classes are equal bytes, never equal
// hashes: where the budget leaves no room for a representative, a class is made by hash only to be read once more by
// itself. A file alone in its class is closed at once. Not thread-safe; one a worker.
class ContentClassifier {
public:
    static constexpr std::uint32_t alone = std::numeric_limits<std::uint32_t>::max();

    // Told of a file that could not be read, or that changed since it was listed. Such a file is alone.
    using Skipped = std::function<void(const ShellItem&, const Error&)>;

    ContentClassifier(ShellNamespace& shell, const EngineOptions& options, const CancelFlag& cancel,
                      const ContentBudget& budget, Skipped skipped);
    ~ContentClassifier();

    // The number of each item's class, from 0, or `alone`. The items are different files of the size that the ranges
    // are made for. False when cancelled.
    [[nodiscard]] bool classify(std::span<const ShellItem* const> items, const ComparedRanges& compared,
                                std::span<std::uint32_t> classes);

    // By all calls so far.
    [[nodiscard]] std::uint64_t bytesRead() const { return bytesRead_; }

private:
    struct Chunk;
    struct Group;
    struct Round;
    struct OpenFile {
        std::unique_ptr<ContentReader> reader;
        std::uint64_t position = 0;
    };

    [[nodiscard]] Chunk chunkOf(const Group& group) const;
    [[nodiscard]] bool runRound(const Group& group);
    void settle(const Group& group, const Chunk& chunk, Round& round);
    [[nodiscard]] Result<std::span<const std::byte>> read(std::uint32_t file, const Chunk& chunk);
    [[nodiscard]] Status seek(std::uint32_t file, std::uint64_t position);
    [[nodiscard]] Status open(std::uint32_t file);
    [[nodiscard]] Status finishReading(std::uint32_t file, const Chunk& chunk);
    void close(std::uint32_t file);
    void closeAll();

    ShellNamespace& shell_;
    const EngineOptions& options_;
    const CancelFlag& cancel_;
    ContentBudget budget_;
    Skipped skipped_;
    KeptChunks kept_;
    std::span<const ShellItem* const> items_;
    const ComparedRanges* compared_ = nullptr;
    std::span<std::uint32_t> classes_;
    std::uint32_t classCount_ = 0;
    std::vector<OpenFile> files_;
    std::size_t openCount_ = 0;
    std::vector<Group> groups_;  // still to be told apart; the last one is next
    std::unique_ptr<Round> round_;
    std::uint64_t bytesRead_ = 0;
};

}  // namespace kelvane
