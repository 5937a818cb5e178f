// The clean-up as a person sees it: pre-check, choice, summary, the run itself, log, removal from the list, report.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/size_text.h"
#include "cleanup/cleanup_pass.h"
#include "cleanup/cleanup_questions.h"
#include "platform/places.h"

namespace kelvane {

// What the settings say, as plain values.
struct CleanupOptions {
    bool writeLog = false;         // binFlags 0x80000
    bool expert = false;           // binFlags 0x80000000: links are offered
    bool noHardLinks = false;      // binMoreOptions 0x4
    bool noSymbolicLinks = false;  // binMoreOptions 0x8
    bool quietSummary = false;     // bin1OffNotify 0x40
    bool offerElevation = true;    // bin1OffNotify 0x100 is clear
    bool compareInFull = true;
    std::filesystem::path logFile;  // where the log goes, in the place of a file that is there; empty: a new file in
                                    // the temporary folder
};

struct CleanupReport;

// All of it outlives the run.
struct CleanupContext {
    ResultsModel& results;
    const CScanNode& definition;
    CleanupFacts facts;
    PassPorts ports;
    FileOutput& output;
    const Places& places;
    Journals& journals;
    CleanupMemory& memory;
    CleanupQuestions& questions;
    PassObserver* watcher = nullptr;  // hears of the pass as well; may be null
    std::string criteria{};           // what the scan looked for, in words (criteriaText()); for the log
    SizeWords sizes = sizeText;       // of what the person is told
    // Called when the work is done and the list is without it, before the person is told: boxes may stand for hours.
    std::function<void(const CleanupReport&)> done{};
};

// What became of it.
struct CleanupReport {
    bool ran = false;              // a pass began
    std::optional<Error> refused;  // why no pass began, unless the person said no; its text was shown to them already
    PassOutcome pass;
    std::vector<ItemOutcome> items;  // one a command of the plan, in its order
    CleanupPlan plan;
    std::optional<RunNumber> run;
    std::uint64_t removed = 0;    // marked rows that left the list
    std::uint64_t reclaimed = 0;  // bytes, in proportion to what was removed of what was marked
    std::u16string message;       // the summary; empty when nothing was removed
    std::filesystem::path log;    // empty when none was asked for
    std::optional<Error> logFailure;
    std::uint32_t noticesOff = 0;  // bits of bin1OffNotify that the person's answers set
};

// Bits of CleanupReport::noticesOff.
namespace cleanup_notice {
inline constexpr std::uint32_t summary = 0x40;
inline constexpr std::uint32_t elevation = 0x100;
}  // namespace cleanup_notice

// The whole command: pre-check, choice, run.
[[nodiscard]] CleanupReport cleanUp(const CleanupContext& context, const CleanupOptions& options,
                                    const CancelFlag& cancel);

// The run for items that are marked and checked already. Rows that were handled leave the list for good; those that
// stay lose their selection.
[[nodiscard]] CleanupReport runCleanup(const CleanupContext& context, const CleanupRequest& request,
                                       const CleanupOptions& options, const CancelFlag& cancel);

// The run with another way to carry the plan out than the passes.
using PassRunner = std::function<PassOutcome(const CleanupPlan& plan, CleanupQuestions& questions,
                                             JournalWriter& journal, PassObserver& observer)>;
[[nodiscard]] CleanupReport runCleanupBy(const PassRunner& pass, const CleanupContext& context,
                                         const CleanupRequest& request, const CleanupOptions& options,
                                         const CancelFlag& cancel);

// Removes from the list every item whose file is not there any more, and gives these items (lone survivors that went
// along are not among them). `told` hears what is going on when it takes a while. A cancelled walk removes what it has
// found so far.
using StatusText = std::function<void(std::u16string_view)>;
std::vector<ItemId> purgeVanished(ResultsModel& results, FileSystem& files, const CancelFlag& cancel,
                                  const StatusText& told = nullptr);

struct FailedDeletion {
    ItemId item{};       // still on the list, and selected
    std::string reason;  // for people, in UTF-8; empty: it was not its turn yet when the work was stopped
};

struct DirectDeletion {
    std::optional<Error> refused;  // a text for people
    std::uint64_t removed = 0;
    std::vector<FailedDeletion> failed;  // in the order of the list; a program with sound beeps for them
    std::optional<RunNumber> run;
};

// "Delete" for the selected rows in view, in expert mode only: into the trash, without a log and without questions.
// What changed since the scan is left alone. The watcher hears of progress alone.
[[nodiscard]] DirectDeletion directDelete(const CleanupContext& context, bool expert, const CancelFlag& cancel);

}  // namespace kelvane
