// What a scan found out about its results and the list of them does not keep.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "cli/report.h"
#include "engine/group_sink.h"

namespace kelvane {

// Fills an empty list, and writes each file's score down under the id that it gets there. Values of the columns that
// the scan has read stay with the files, so that listing them opens no file again.
class ScoreKeeper final : public GroupSink {
public:
    ScoreKeeper(ResultsModel& results, std::vector<PropRef> columns) : results_(results), columns_(std::move(columns))
    {
    }

    [[nodiscard]] Status add(const Candidate& file, std::uint32_t flags, std::optional<std::int32_t> score) override
    {
        const Status added = results_.add(file, flags, score);
        if (!added)
            return added;
        scores_.resize(results_.idLimit());
        scores_.back() = score;
        keepValues(file, results_.file(ItemId{static_cast<std::uint32_t>(scores_.size() - 1)}));
        return added;
    }
    void selectLast() override { results_.selectLast(); }

    [[nodiscard]] const FileScores& scores() const { return scores_; }
    [[nodiscard]] const std::vector<PropRef>& columns() const { return columns_; }

private:
    void keepValues(const Candidate& from, ItemContext& to) const
    {
        for (const PropRef& column : columns_) {
            const PROPCACHE* known = from.find(column.identifier, column.kind());
            if (known == nullptr || known->pending())
                continue;
            auto kept = std::make_unique<PROPCACHE>();
            kept->identifier = known->identifier;
            kept->kind = known->kind;
            kept->flags = known->flags;
            kept->value = known->value;
            kept->text = known->text;
            kept->raw = known->raw;
            to.push(std::move(kept));
        }
    }

    ResultsModel& results_;
    const std::vector<PropRef> columns_;
    FileScores scores_;
};

}  // namespace kelvane
