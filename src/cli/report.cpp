#include "cli/report.h"

#include <ostream>
#include <utility>

#include "platform/native_text.h"

namespace kelvane {

void writeReport(OutputFormat format, const ScanOutcome& outcome, std::ostream& out)
{
    switch (format) {
    case OutputFormat::text:
        return writeTextReport(outcome, out);
    case OutputFormat::json:
        return writeJsonReport(outcome, out);
    case OutputFormat::csv:
        return writeCsvReport(outcome, out);
    case OutputFormat::null:
        return writeNullReport(outcome, out);
    }
}

void forEachGroup(const ResultsModel& results, const std::function<bool(const GroupFacts&)>& visit)
{
    results.forEachRun([&](std::span<const ItemId> run) {
        const ResultGroup& group = results.groupOf(run.front());
        GroupFacts facts{group.number, group.approximate, {}};
        for (const ItemId id : run)
            facts.files.push_back(&results.item(id).file.item());
        return visit(facts);
    });
}

bool goesOn(const ScanOutcome& outcome, const std::ostream& out)
{
    return out.good() && !outcome.cancel.cancelled();
}

// A NUL ends every name and one more parts two groups, so that any name can be read back.
void writeNullReport(const ScanOutcome& outcome, std::ostream& out)
{
    bool first = true;
    forEachGroup(outcome.results, [&](const GroupFacts& group) {
        if (!goesOn(outcome, out))
            return false;
        if (!std::exchange(first, false))
            out.put('\0');
        for (const ShellItem* file : group.files)
            out << bytesFromNative(file->fullName()) << '\0';
        return true;
    });
}

}  // namespace kelvane
