// The clean-up as a person sees it: pre-check, choice, summary, the run itself, log, removal from the list, report.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

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
    std::filesystem::path logFile;  // where the log goes; empty: a new name in the temporary folder
};

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
};

// What became of it.
struct CleanupReport {
    bool ran = false;              // a pass began
    std::optional<Error> refused;  // why no pass began, with a text for people, unless the person said no
    PassOutcome pass;
    std::vector<ItemOutcome> items;  // one a command of the plan
    CleanupPlan plan;
    std::optional<RunNumber> run;
    std::uint64_t removed = 0;     // rows that left the list
    std::uint64_t reclaimed = 0;   // bytes, in proportion to what was removed of what was marked
    std::u16string message;        // the summary; empty when nothing was removed
    std::filesystem::path log;     // empty when none was asked for
    std::uint32_t noticesOff = 0;  // bits of bin1OffNotify that the person's answers set
};

// The whole command: pre-check, choice, run.
[[nodiscard]] CleanupReport cleanUp(const CleanupContext& context, const CleanupOptions& options,
                                    const CancelFlag& cancel);

// The run for items that are marked and checked already.
[[nodiscard]] CleanupReport runCleanup(const CleanupContext& context, const CleanupRequest& request,
                                       const CleanupOptions& options, const CancelFlag& cancel);

// Removes from the list every item whose file is not there any more; the number of rows that left.
[[nodiscard]] std::uint32_t purgeVanished(ResultsModel& results, FileSystem& files, const CancelFlag& cancel);

}  // namespace kelvane
