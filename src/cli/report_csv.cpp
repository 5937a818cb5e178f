#include <ostream>

#include "base/utf.h"
#include "cli/csv.h"
#include "cli/report.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

void writeFile(const GroupFacts& group, const ShellItem& file, std::ostream& out)
{
    const FileInfo& info = file.info();
    const std::string path = bytesFromNative(file.fullName());
    writeCsvRow({std::to_string(group.number), group.approximate ? "true" : "false", std::to_string(info.size.bytes),
                 info.modified.ticks != 0 ? toIso8601(info.modified) : "", displayText(path),
                 isValidUtf8(path) ? "" : percentEncode(path)},
                out);
}

}  // namespace

void writeCsvReport(const ScanOutcome& outcome, std::ostream& out)
{
    writeCsvRow({"group", "approximate", "size", "modified", "path", "path_bytes"}, out);
    forEachGroup(outcome.results, [&](const GroupFacts& group) {
        if (!goesOn(outcome, out))
            return false;
        for (const ShellItem* file : group.files)
            writeFile(group, *file, out);
        return true;
    });
}

}  // namespace kelvane
