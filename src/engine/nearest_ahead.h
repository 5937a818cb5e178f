// What workers find ahead of the group walk: for each position the nearest later one that matches.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/cancel.h"
#include "engine/neighbours.h"
#include "engine/ordered_tasks.h"

namespace kelvane {

// A group is a chain, so that further matches are wanted only where the nearest is taken already. Used by the walk's
// thread.
class NearestAhead {
public:
    struct Match {
        std::uint32_t position = Neighbours::none;
        std::int32_t score = 0;
    };
    // Thread-safe; called once for each reference, in the order of the walk. May end early when cancelled.
    using Search = std::function<Match(std::uint32_t reference)>;

    // The search may use whatever outlives this. A worker takes `batch` references in a row: more than one where
    // neighbours need the same costly things, which workers side by side would wait for.
    NearestAhead(std::size_t count, unsigned threads, Search search, const CancelFlag& cancel, std::size_t batch = 1);

    // Whether the reference was searched for; waits for that, see OrderedTasks::await(). False when cancelled.
    [[nodiscard]] bool await(std::uint32_t reference, const std::function<void()>& whileWaiting);
    // For Neighbours::next(): nothing where the match lies at `after` or before it, and has to be looked for.
    [[nodiscard]] std::optional<std::uint32_t> next(std::uint32_t reference, std::uint32_t after) const;
    // For Neighbours::knownScore().
    [[nodiscard]] std::optional<ContentScore> score(std::uint32_t reference, std::uint32_t position) const;

private:
    void searchBatch(std::size_t number);

    const Search search_;
    const CancelFlag& cancel_;
    const std::size_t batch_;
    std::vector<Match> matches_;  // each written by one worker, read once its task is done
    OrderedTasks tasks_;          // last: its threads use everything above
};

}  // namespace kelvane
