#include <ostream>

#include "base/utf.h"
#include "cli/csv.h"
#include "cli/report.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

void writeFile(const ResultGroup& group, const ResultItem& item, std::ostream& out)
{
    const FileInfo& info = item.file->info();
    const std::string path = bytesFromNative(item.file->fullName());
    writeCsvRow({std::to_string(group.number), group.approximate ? "true" : "false", std::to_string(info.size.bytes),
                 info.modified.ticks != 0 ? toIso8601(info.modified) : "", displayText(path),
                 isValidUtf8(path) ? "" : percentEncode(path)},
                out);
}

}  // namespace

void writeCsvReport(const ScanOutcome& outcome, std::ostream& out)
{
    writeCsvRow({"group", "approximate", "size", "modified", "path", "path_bytes"}, out);
    for (const auto& group : outcome.results.groups()) {
        if (!goesOn(outcome, out))
            return;
        for (const ResultItem* item : group->items)
            writeFile(*group, *item, out);
    }
}

}  // namespace kelvane
