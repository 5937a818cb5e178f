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

bool goesOn(const ScanOutcome& outcome, const std::ostream& out)
{
    return out.good() && !outcome.cancel.cancelled();
}

// A NUL ends every name and one more parts two groups, so that any name can be read back.
void writeNullReport(const ScanOutcome& outcome, std::ostream& out)
{
    bool first = true;
    for (const auto& group : outcome.results.groups()) {
        if (!goesOn(outcome, out))
            return;
        if (!std::exchange(first, false))
            out.put('\0');
        for (const ResultItem* item : group->items)
            out << bytesFromNative(item->file->fullName()) << '\0';
    }
}

}  // namespace kelvane
