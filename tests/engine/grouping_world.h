// Candidates straight from the files of a small world, grouped in one call.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "engine/classified_ahead.h"
#include "engine/grouping.h"
#include "support/paths.h"
#include "support/scan_world.h"

namespace kelvane::testing {

// Writes down what grouping hands over.
class RecordingSink final : public GroupSink {
public:
    struct Row {
        std::string path;
        std::int32_t group = 0;
        bool approximate = false;
        std::optional<std::int32_t> score = std::nullopt;
        friend bool operator==(const Row&, const Row&) = default;
        friend std::ostream& operator<<(std::ostream& out, const Row& row)
        {
            return out << row.group << (row.approximate ? "~ " : " ") << row.path;
        }
    };

    Status add(const Candidate& file, std::uint32_t flags, std::optional<std::int32_t> score) override
    {
        const std::string path = posix(file.item().fullName());
        if (path == refuses)
            return Error{};
        rows.push_back({path, file.group.value, (flags & add_flag::approximate) != 0, score});
        return {};
    }
    void selectLast() override { ++selections; }

    // The paths of each group, in the order handed over.
    [[nodiscard]] std::vector<std::vector<std::string>> groups() const
    {
        std::vector<std::vector<std::string>> all;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (i == 0 || rows[i].group != rows[i - 1].group)
                all.emplace_back();
            all.back().push_back(rows[i].path);
        }
        return all;
    }

    std::vector<Row> rows;
    int selections = 0;
    std::string refuses;
};

struct GroupingWorld : ScanWorld {
    using ScanWorld::ScanWorld;

    RecordingObserver observer;
    CancelFlag cancel;
    GroupingStats stats;
    AheadBudget budget;

    // Every file below a folder, entries of archives included, in the order of names.
    void gather(CandidateList& list, const std::string& folder = "/")
    {
        addFolder(list, *shell->parse(native(folder)));
    }

    std::int64_t group(const ScanCriteria& by, CandidateList& list, RecordingSink& sink, GroupingMode mode = {})
    {
        const GroupingPorts ports{*shell, *paths, properties, clock, observer, cancel, sink, similar, ignored};
        mode.budget = &budget;
        return groupCandidates(by, list, ports, mode, stats);
    }

    // Everything in the world, once.
    RecordingSink groupAll(const ScanCriteria& by)
    {
        CandidateList list;
        gather(list);
        RecordingSink sink;
        const std::int64_t rows = group(by, list, sink);
        EXPECT_EQ(rows, static_cast<std::int64_t>(sink.rows.size()));
        return sink;
    }

    SimilarContent* similar = nullptr;
    const IgnoredPairs* ignored = nullptr;

private:
    void addFolder(CandidateList& list, const Ref<const ShellItem>& folder)
    {
        const Status listed = shell->enumerate(folder, {.archivesAsFolders = true}, [&](const Ref<ShellItem>& item) {
            if (item->isFolder())
                addFolder(list, item);
            else
                list.emplace_back(item);
            return true;
        });
        EXPECT_TRUE(listed);
    }
};

// What the searches of these tests start from: contents, nothing protected, no small files left out.
inline constexpr std::uint32_t exactContents = scan_flag::contents | scan_flag::subfolders;

}  // namespace kelvane::testing
