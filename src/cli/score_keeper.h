// Scores of a scan's results, which the list of results itself does not keep.
#pragma once

#include "cli/report.h"
#include "engine/group_sink.h"

namespace kelvane {

// Fills an empty list, and writes each file's score down under the id that it gets there.
class ScoreKeeper final : public GroupSink {
public:
    explicit ScoreKeeper(ResultsModel& results) : results_(results) {}

    [[nodiscard]] Status add(const Candidate& file, std::uint32_t flags, std::optional<std::int32_t> score) override
    {
        const Status added = results_.add(file, flags, score);
        if (added)
            scores_.resize(results_.idLimit());
        if (added && score)
            scores_.back() = score;
        return added;
    }
    void selectLast() override { results_.selectLast(); }

    [[nodiscard]] const FileScores& scores() const { return scores_; }

private:
    ResultsModel& results_;
    FileScores scores_;
};

}  // namespace kelvane
